#include "Account.h"

#include <fmt/chrono.h>
#include <fmt/format.h>
#include <fmt/ostream.h>

#include <chrono>
#include <ostream>

#include "WireCatalogue.h"

namespace pelorino::backend {

namespace json = boost::json;

namespace {

std::string clockTime(std::int64_t time) {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(
      std::chrono::system_clock::time_point(std::chrono::milliseconds(time)));
  return fmt::format("{:%H:%M:%S}.{:03}", seconds, time % 1000);
}

std::string entries(const json::object& object);

std::string valueText(const json::value& value) {
  if (value.is_string()) return std::string(value.get_string());
  if (value.is_double()) return fmt::format("{}", value.get_double());
  if (value.is_object()) return fmt::format("{{{}}}", entries(value.get_object()));
  if (!value.is_array()) return json::serialize(value);
  std::vector<std::string> elements;
  for (const json::value& element : value.get_array()) elements.push_back(valueText(element));
  return fmt::format("{}", fmt::join(elements, ", "));
}

/// "key=value  key=value"
std::string entries(const json::object& object) {
  std::vector<std::string> parts;
  for (const auto& [key, value] : object) {
    parts.push_back(fmt::format("{}={}", std::string_view(key), valueText(value)));
  }
  return fmt::format("{}", fmt::join(parts, "  "));
}

/// Its time, and what not every event has.
std::string eventText(json::object event) {
  const std::string time = clockTime(integerOf(event, "timestamp"));
  for (const char* key : {"code", "timestamp", "sessionId"}) event.erase(key);
  return time + "  " + entries(event);
}

std::string counts(const std::map<std::string, int>& numbers) {
  std::vector<std::string> parts;
  for (const auto& [name, number] : numbers) parts.push_back(fmt::format("{} {}", number, name));
  return fmt::format("{}", fmt::join(parts, ", "));
}

void printRow(std::ostream& out, std::string_view label, std::string_view value) {
  if (!value.empty()) fmt::print(out, "  {:<23} {}\n", label, value);
}

void printEvents(std::ostream& out, const UserAccount& account) {
  for (const WireRecord& record : eventRecords()) {
    auto events = account.eventsOf(record.fields.front().constant);
    // The device hardly changes; show what it has told last.
    if (record.name == "DeviceInfo" && !events.empty())
      events.erase(events.begin(), events.end() - 1);
    std::string_view label = record.name;
    for (const json::object* event : events) {
      printRow(out, label, eventText(*event));
      label = "";
    }
  }
}

void printUser(std::ostream& out, const UserAccount& account) {
  fmt::print(out, "User {}{}\n", account.userId.empty() ? "of the device" : account.userId,
             account.formerly.empty() ? "" : ", formerly " + account.formerly);
  printRow(out, "application", account.appId);
  printRow(out, "device", account.deviceId);
  printRow(out, "requests", counts(account.requests));
  printRow(out, "sessions", fmt::format("{}", account.eventsOf("ss").size()));
  printRow(out, "level", fmt::format("{}", account.level()));
  printRow(out, "card", entries(account.card));
  printEvents(out, account);
  printRow(out, "wire format", account.problems.empty() ? "every request is right" : "WRONG");
  for (const std::string& problem : account.problems) printRow(out, "", problem);
  out << "\n";
}

/// Signs of life, and the word that tracking is off, leave the client without being stored.
bool mayArriveUnstored(const EventMark& mark) {
  return mark.code == "al" || mark.code == "ts";
}

bool printComparison(std::ostream& out, const std::vector<UserAccount>& accounts,
                     const EventMarks& stored) {
  EventMarks surplus;
  std::size_t arrived = 0;
  for (const UserAccount& account : accounts) {
    for (const json::object& event : account.events) ++surplus[markOf(event)];
    arrived += account.events.size();
  }
  std::size_t count = 0;
  for (const auto& [mark, times] : stored) {
    surplus[mark] -= times;
    count += static_cast<std::size_t>(times);
  }
  fmt::print(out, "The library stored {} events; {} arrived.\n", count, arrived);
  bool equal = true;
  for (const auto& [mark, times] : surplus) {
    if (times == 0 || (times > 0 && mayArriveUnstored(mark))) continue;
    equal = false;
    fmt::print(out, "  {} of {} {}\n", mark.code, clockTime(mark.timestamp),
               times < 0 ? "is MISSING" : "was NOT STORED so often as it arrived");
  }
  return equal;
}

}  // namespace

bool printAccount(std::ostream& out, const std::vector<UserAccount>& accounts,
                  const std::optional<EventMarks>& stored) {
  bool right = true;
  for (const UserAccount& account : accounts) {
    printUser(out, account);
    right = right && account.problems.empty();
  }
  if (stored) right = printComparison(out, accounts, *stored) && right;
  return right;
}

}  // namespace pelorino::backend
