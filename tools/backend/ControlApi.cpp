#include "ControlApi.h"

#include <httplib.h>

#include <boost/json.hpp>
#include <charconv>
#include <functional>
#include <stdexcept>
#include <string>

#include "AnswerScript.h"
#include "ExchangeStore.h"
#include "Summary.h"
#include "WireCatalogue.h"

namespace pelorino::backend {

namespace json = boost::json;

namespace {

constexpr const char* jsonType = "application/json";

std::string endpointOf(const json::object& order) {
  const json::value* value = order.if_contains("endpoint");
  if (!value || !value->is_string()) throw std::invalid_argument("\"endpoint\" is missing");
  std::string endpoint(value->get_string());
  if (!requestRecord(endpoint)) throw std::invalid_argument("no such endpoint: " + endpoint);
  return endpoint;
}

Answer answerOf(const json::object& order) {
  Answer answer;
  if (const json::value* status = order.if_contains("status"))
    answer.status = status->to_number<int>();
  if (const json::value* body = order.if_contains("body")) answer.body = json::serialize(*body);
  if (const json::value* text = order.if_contains("text")) answer.body = text->as_string();
  return answer;
}

Fault::Drop dropOf(const json::value& value) {
  if (value == "before") return Fault::Drop::before;
  if (value == "after") return Fault::Drop::after;
  throw std::invalid_argument("\"drop\" is neither \"before\" nor \"after\"");
}

Fault faultOf(const json::object& order) {
  Fault fault;
  for (const auto& [key, value] : order) {
    if (key == "endpoint") continue;
    if (key == "times")
      fault.times = value.to_number<int>();
    else if (key == "status")
      fault.status = value.to_number<int>();
    else if (key == "location")
      fault.location = value.as_string();
    else if (key == "delayMs")
      fault.delay = std::chrono::milliseconds(value.to_number<int>());
    else if (key == "drop")
      fault.drop = dropOf(value);
    else if (key == "truncate")
      fault.truncate = value.as_bool();
    else if (key == "garbage")
      fault.garbage = value.as_bool();
    else if (key == "hugeBody")
      fault.hugeBody = value.to_number<std::uint64_t>();
    else
      throw std::invalid_argument("no such fault: " + std::string(key));
  }
  return fault;
}

json::value describe(const Exchange& exchange) {
  boost::system::error_code error;
  json::value body = json::parse(exchange.body, error);
  if (error) body = json::string(exchange.body);
  return {{"id", exchange.id},
          {"time", exchange.time},
          {"endpoint", exchange.endpoint},
          {"path", exchange.path},
          {"appId", exchange.appId},
          {"headers", json::value_from(exchange.headers)},
          {"body", std::move(body)},
          {"status", exchange.status},
          {"fault", exchange.fault},
          {"verdict", json::value_from(exchange.verdict)}};
}

json::value received(ExchangeStore& store, const httplib::Request& request) {
  std::int64_t since = 0;
  const std::string text = request.get_param_value("since");
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), since);
  if (!text.empty() && (error != std::errc() || end != text.data() + text.size())) {
    throw std::invalid_argument("\"since\" is no number");
  }
  json::array list;
  store.read(request.get_param_value("endpoint"), since,
             [&](const Exchange& exchange) { list.push_back(describe(exchange)); });
  return list;
}

/// A handler that answers what `work` returns, or 400 with what it throws.
httplib::Server::Handler answering(std::function<json::value(const httplib::Request&)> work) {
  return [work = std::move(work)](const httplib::Request& request, httplib::Response& response) {
    try {
      response.set_content(json::serialize(work(request)), jsonType);
    } catch (const std::exception& error) {
      response.status = 400;
      response.set_content(json::serialize(json::value{{"error", error.what()}}), jsonType);
    }
  };
}

}  // namespace

void serveControl(httplib::Server& server, ExchangeStore& store, AnswerScript& script) {
  server.Post("/control/answer", answering([&](const httplib::Request& request) {
                // An answer may be any bytes, to see what clients make of them.
                json::parse_options options;
                options.allow_invalid_utf8 = true;
                const json::value order = json::parse(request.body, json::storage_ptr(), options);
                script.setAnswer(endpointOf(order.as_object()), answerOf(order.as_object()));
                return json::object();
              }));
  server.Post("/control/fault", answering([&](const httplib::Request& request) {
                const json::value order = json::parse(request.body);
                script.addFault(endpointOf(order.as_object()), faultOf(order.as_object()));
                return json::object();
              }));
  server.Post("/control/reset", answering([&](const httplib::Request&) {
                script.reset();
                store.clear();
                return json::object();
              }));
  server.Get("/control/received",
             answering([&](const httplib::Request& request) { return received(store, request); }));
  server.Get("/control/summary",
             answering([&](const httplib::Request&) { return describe(summarize(store)); }));
}

}  // namespace pelorino::backend
