#include "Account.h"

#include <fmt/chrono.h>
#include <fmt/format.h>
#include <fmt/ostream.h>

#include <boost/json.hpp>
#include <chrono>
#include <ostream>

namespace pelorino::backend {

namespace json = boost::json;

namespace {

using Milliseconds = std::chrono::milliseconds;

std::string clockTime(std::int64_t time) {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(
      std::chrono::system_clock::time_point(Milliseconds(time)));
  return fmt::format("{:%H:%M:%S}.{:03}", seconds, time % 1000);
}

std::string scalarText(const json::value& value) {
  if (value.is_string()) return std::string(value.get_string());
  if (value.is_double()) return fmt::format("{}", value.get_double());
  return json::serialize(value);
}

/// The entries of a JSON object, as "key=value  key=value".
std::string entries(const std::string& object) {
  if (object.empty()) return {};
  const json::value value = json::parse(object);
  std::vector<std::string> parts;
  for (const auto& [key, entry] : value.as_object()) {
    if (key == "code" || key == "timestamp") continue;
    parts.push_back(fmt::format("{}={}", std::string_view(key), scalarText(entry)));
  }
  return fmt::format("{}", fmt::join(parts, "  "));
}

std::string counts(const std::map<std::string, int>& numbers) {
  std::vector<std::string> parts;
  for (const auto& [name, number] : numbers) parts.push_back(fmt::format("{} {}", number, name));
  return fmt::format("{}", fmt::join(parts, ", "));
}

void printRow(std::ostream& out, std::string_view label, std::string_view value) {
  if (!value.empty()) fmt::print(out, "  {:<14}{}\n", label, value);
}

void printUser(std::ostream& out, const UserAccount& account) {
  fmt::print(out, "Application {}, user {}\n", account.appId,
             account.userId.empty() ? "of the device" : account.userId);
  printRow(out, "device", account.deviceId);
  printRow(out, "requests", counts(account.requests));
  for (const std::int64_t session : account.sessions) {
    printRow(out, "session", fmt::format("started at {} UTC", clockTime(session)));
  }
  printRow(out, "device info", entries(account.deviceInfo));
  printRow(out, "events", counts(account.events));
  std::string_view label = "custom events";
  for (const ReceivedEvent& event : account.customEvents) {
    printRow(
        out, label,
        fmt::format("{}  {:<20} {}", clockTime(event.time), event.name, entries(event.parameters)));
    label = "";
  }
  printRow(out, "wire format", account.problems.empty() ? "every request is right" : "WRONG");
  for (const std::string& problem : account.problems) printRow(out, "", problem);
  out << "\n";
}

bool printComparison(std::ostream& out, const std::vector<UserAccount>& accounts,
                     const ReportedEvents& reported) {
  std::map<std::string, int> arrived;
  for (const UserAccount& account : accounts) {
    for (const ReceivedEvent& event : account.customEvents) ++arrived[event.name];
  }
  bool complete = true;
  fmt::print(out, "{:<24}{:>10}{:>10}\n", "Custom event", "reported", "arrived");
  for (const auto& [name, times] : reported) {
    const bool equal = arrived[name] == times;
    fmt::print(out, "{:<24}{:>10}{:>10}{}\n", name, times, arrived[name], equal ? "" : "  DIFFERS");
    complete = complete && equal;
  }
  return complete;
}

}  // namespace

bool printAccount(std::ostream& out, const std::vector<UserAccount>& accounts,
                  const ReportedEvents& reported) {
  bool right = true;
  for (const UserAccount& account : accounts) {
    printUser(out, account);
    right = right && account.problems.empty();
  }
  if (!reported.empty()) right = printComparison(out, accounts, reported) && right;
  return right;
}

}  // namespace pelorino::backend
