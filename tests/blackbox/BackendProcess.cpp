#include "BackendProcess.h"

#include <httplib.h>

#include <memory>
#include <stdexcept>

namespace pelorino::blackbox {

namespace json = boost::json;

namespace {

std::vector<std::string> commandLine(const std::string& dataFile,
                                     const std::vector<std::string>& options) {
  std::vector<std::string> words = {PELORINO_BACKEND, "--data", dataFile, "--port", "0"};
  words.insert(words.end(), options.begin(), options.end());
  return words;
}

std::unique_ptr<httplib::Client> clientOf(const std::string& url) {
  auto client = std::make_unique<httplib::Client>(url);
  client->enable_server_certificate_verification(false);
  client->set_read_timeout(Process::deadline);
  return client;
}

/// The text of that key; empty where there is none.
std::string textOf(const json::value& object, std::string_view key) {
  const json::value* text = object.as_object().if_contains(key);
  return text ? json::value_to<std::string>(*text) : std::string();
}

const httplib::Response& answered(const httplib::Result& result) {
  if (!result) throw std::runtime_error("the backend does not answer");
  return *result;
}

}  // namespace

json::object Arrived::content() const {
  json::object content = event;
  for (const char* key : {"code", "timestamp", "sessionId"}) content.erase(key);
  return content;
}

BackendProcess::BackendProcess(const std::string& dataFile, const std::vector<std::string>& options)
    : process_(commandLine(dataFile, options)) {
  const std::string greeting = "listening on ";
  const auto lines =
      process_.waitForLines([&](const std::string& line) { return line.starts_with(greeting); });
  if (lines.empty()) throw std::runtime_error("the backend does not start");
  url_ = lines.front().substr(greeting.size());
}

int BackendProcess::port() const {
  return std::stoi(url_.substr(url_.rfind(':') + 1));
}

void BackendProcess::control(const std::string& what, const json::object& order) {
  const auto result =
      clientOf(url_)->Post("/control/" + what, json::serialize(order), "application/json");
  if (answered(result).status != 200) throw std::runtime_error(result->body);
}

void BackendProcess::answer(const std::string& endpoint, const json::object& body, int status) {
  control("answer", {{"endpoint", endpoint}, {"status", status}, {"body", body}});
}

void BackendProcess::fault(const std::string& endpoint, json::object order) {
  order["endpoint"] = endpoint;
  control("fault", order);
}

int BackendProcess::post(const std::string& endpoint, const std::string& body) {
  const httplib::Headers headers = {{"DeviceId", "ZGV2aWNl"}, {"X-Id-Encoding", "base64"}};
  return answered(
             clientOf(url_)->Post("/v2" + endpoint + "?appId=k", headers, body, "application/json"))
      .status;
}

json::array BackendProcess::received(const std::string& endpoint) {
  const auto result = clientOf(url_)->Get("/control/received?endpoint=" + endpoint);
  return json::parse(answered(result).body).as_array();
}

std::vector<Arrived> BackendProcess::events(const std::string& code) {
  std::vector<Arrived> list;
  for (const json::value& exchange : received("/analytics/report")) {
    if (exchange.at("status") != 200) continue;
    const std::string user = textOf(exchange.at("headers"), "UserId");
    const json::array& packages = exchange.at("body").at("reports").at(0).at("packages").as_array();
    for (const json::value& package : packages) {
      for (const json::value& event : package.at("events").as_array()) {
        if (event.at("code") != json::string(code)) continue;
        list.push_back({textOf(event, "name"), user, event.as_object()});
      }
    }
  }
  return list;
}

json::object BackendProcess::summary(const std::string& userId) {
  const auto result = clientOf(url_)->Get("/control/summary");
  const json::value accounts = json::parse(answered(result).body);
  for (const json::value& account : accounts.as_array()) {
    if (account.at("userId") == json::string(userId)) return account.as_object();
  }
  throw std::runtime_error("nothing has arrived of " + userId);
}

std::vector<std::string> BackendProcess::names() {
  std::vector<std::string> list;
  for (const Arrived& arrived : events("ce")) list.push_back(arrived.name);
  return list;
}

std::vector<std::string> BackendProcess::findings() {
  std::vector<std::string> list;
  for (const json::value& exchange : received("")) {
    for (const json::value& finding : exchange.at("verdict").as_array()) {
      list.push_back(json::value_to<std::string>(finding));
    }
  }
  return list;
}

}  // namespace pelorino::blackbox
