#include "Summary.h"

#include <fmt/format.h>

#include <tuple>

#include "ExchangeStore.h"

namespace pelorino::backend {

namespace json = boost::json;

namespace {

/// By application, device and user.
using Accounts = std::map<std::tuple<std::string, std::string, std::string>, UserAccount>;

/// The account of the sender. Users who have been renamed keep theirs.
UserAccount& accountOf(Accounts& accounts, const Exchange& exchange) {
  const auto key = [&](std::string userId) {
    return std::tuple(exchange.appId, exchange.deviceId(), std::move(userId));
  };
  const std::string previous = exchange.header("PreviousUserId");
  if (!previous.empty() && !accounts.contains(key(exchange.userId()))) {
    if (auto renamed = accounts.extract(key(previous))) {
      renamed.key() = key(exchange.userId());
      renamed.mapped().formerly = previous;
      accounts.insert(std::move(renamed));
    }
  }
  UserAccount& account = accounts[key(exchange.userId())];
  account.appId = exchange.appId;
  account.deviceId = exchange.deviceId();
  account.userId = exchange.userId();
  return account;
}

/// An event of the card holds what has changed: null for a key that is gone, and null in place of
/// all keys when the card was cleared.
void changeCard(json::object& card, const json::object& event) {
  const json::value* parameters = event.if_contains("parameters");
  if (!parameters || !parameters->is_object()) return card.clear();
  for (const auto& [key, value] : parameters->get_object()) {
    if (value.is_null()) {
      card.erase(key);
    } else {
      card[key] = value;
    }
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
        if (!event.is_object()) continue;
        account.events.push_back(event.get_object());
        if (textOf(event.get_object(), "code") == "pl") {
          changeCard(account.card, event.get_object());
        }
      }
    }
  }
}

json::value describe(const UserAccount& account) {
  std::map<std::string, int> counts;
  for (const json::object& event : account.events) ++counts[textOf(event, "code")];
  json::array sessions;
  for (const json::object* start : account.eventsOf("ss")) {
    sessions.push_back(integerOf(*start, "timestamp"));
  }
  return {{"appId", account.appId},
          {"deviceId", account.deviceId},
          {"userId", account.userId},
          {"formerly", account.formerly},
          {"requests", json::value_from(account.requests)},
          {"events", json::value_from(counts)},
          {"sessions", std::move(sessions)},
          {"level", account.level()},
          {"card", account.card},
          {"problems", json::value_from(account.problems)}};
}

}  // namespace

std::int64_t integerOf(const json::object& event, std::string_view key) {
  const json::value* value = event.if_contains(key);
  return value && value->is_int64() ? value->get_int64() : 0;
}

std::string textOf(const json::object& event, std::string_view key) {
  const json::value* text = event.if_contains(key);
  return text && text->is_string() ? std::string(text->get_string()) : std::string();
}

std::vector<const json::object*> UserAccount::eventsOf(std::string_view code) const {
  std::vector<const json::object*> found;
  for (const json::object& event : events) {
    if (textOf(event, "code") == code) found.push_back(&event);
  }
  return found;
}

std::int64_t UserAccount::level() const {
  std::int64_t level = 0;
  for (const json::object& event : events) {
    if (event.contains("level")) level = integerOf(event, "level");
  }
  return level;
}

std::vector<UserAccount> summarize(ExchangeStore& store) {
  Accounts accounts;
  store.read("", 0, [&](const Exchange& exchange) {
    UserAccount& account = accountOf(accounts, exchange);
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
