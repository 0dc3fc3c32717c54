#include "Summary.h"

#include <fmt/format.h>

#include <boost/json.hpp>
#include <tuple>

#include "ExchangeStore.h"

namespace pelorino::backend {

namespace json = boost::json;

namespace {

std::int64_t timeOf(const json::object& event) {
  const json::value* time = event.if_contains("timestamp");
  return time && time->is_int64() ? time->get_int64() : 0;
}

std::string textOf(const json::object& event, std::string_view key) {
  const json::value* text = event.if_contains(key);
  return text && text->is_string() ? std::string(text->get_string()) : std::string();
}

void addEvent(UserAccount& account, const json::object& event) {
  const std::string code = textOf(event, "code");
  ++account.events[code];
  if (code == "ss") account.sessions.push_back(timeOf(event));
  if (code == "di") account.deviceInfo = json::serialize(event);
  if (code == "ce") {
    const json::value* parameters = event.if_contains("parameters");
    account.customEvents.push_back({timeOf(event), textOf(event, "name"),
                                    parameters ? json::serialize(*parameters) : std::string()});
  }
}

/// The elements of a list in an object; none when there is no such list. The wire checks have
/// complained of that already.
json::array elements(const json::value& value, std::string_view key) {
  const json::object* object = value.if_object();
  const json::value* list = object ? object->if_contains(key) : nullptr;
  return list && list->is_array() ? list->get_array() : json::array();
}

void addReport(UserAccount& account, const std::string& body) {
  boost::system::error_code error;
  const json::value reports = json::parse(body, error);
  if (error) return;
  for (const json::value& report : elements(reports, "reports")) {
    for (const json::value& package : elements(report, "packages")) {
      for (const json::value& event : elements(package, "events")) {
        if (event.is_object()) addEvent(account, event.get_object());
      }
    }
  }
}

json::value describe(const UserAccount& account) {
  json::array customEvents;
  for (const ReceivedEvent& event : account.customEvents) {
    json::object described{{"time", event.time}, {"name", event.name}};
    if (!event.parameters.empty()) described["parameters"] = json::parse(event.parameters);
    customEvents.push_back(std::move(described));
  }
  json::value deviceInfo;
  if (!account.deviceInfo.empty()) deviceInfo = json::parse(account.deviceInfo);
  return {{"appId", account.appId},
          {"deviceId", account.deviceId},
          {"userId", account.userId},
          {"requests", json::value_from(account.requests)},
          {"events", json::value_from(account.events)},
          {"sessions", json::value_from(account.sessions)},
          {"deviceInfo", std::move(deviceInfo)},
          {"customEvents", std::move(customEvents)},
          {"problems", json::value_from(account.problems)}};
}

}  // namespace

std::vector<UserAccount> summarize(ExchangeStore& store) {
  std::map<std::tuple<std::string, std::string, std::string>, UserAccount> accounts;
  store.read("", 0, [&](const Exchange& exchange) {
    UserAccount& account = accounts[{exchange.appId, exchange.deviceId(), exchange.userId()}];
    account.appId = exchange.appId;
    account.deviceId = exchange.deviceId();
    account.userId = exchange.userId();
    ++account.requests[exchange.endpoint];
    for (const std::string& finding : exchange.verdict) {
      account.problems.push_back(
          fmt::format("#{} {}: {}", exchange.id, exchange.endpoint, finding));
    }
    if (exchange.endpoint == "/analytics/report" && exchange.status == 200) {
      addReport(account, exchange.body);
    }
  });
  std::vector<UserAccount> list;
  for (auto& [key, account] : accounts) list.push_back(std::move(account));
  return list;
}

json::value describe(const std::vector<UserAccount>& accounts) {
  json::array list;
  for (const UserAccount& account : accounts) list.push_back(describe(account));
  return list;
}

}  // namespace pelorino::backend
