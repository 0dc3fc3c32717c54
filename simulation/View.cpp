#include "View.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace pelorino {

void View::failIf(bool isBroken, std::string_view finding, RowKey row) const {
  if (isBroken) fail(std::string(finding) + (row == 0 ? "" : " " + std::to_string(row)));
}

const Row* View::project() const {
  const auto& projects = tables.of("projects");
  return projects.empty() ? nullptr : &projects.begin()->second;
}

bool View::isTracking() const {
  const Row* row = project();
  return row != nullptr && integer(cell<ProjectEntry>(*row, "trackingAvailable")) != 0;
}

std::optional<boost::json::value> View::configured(std::string_view pointer) const {
  const Row* row = project();
  if (row == nullptr || !cell<ProjectEntry>(*row, "configuration")) return std::nullopt;
  const boost::json::value all = boost::json::parse(*cell<ProjectEntry>(*row, "configuration"));
  boost::json::error_code missing;
  const auto* found = all.find_pointer(pointer, missing);
  return found == nullptr ? std::nullopt : std::optional(*found);
}

bool View::isEverythingExcluded() const {
  return configured("/exclude/all").value_or(false).as_bool();
}

bool View::isExcluded(std::string_view code, std::string_view argument) const {
  const auto* list = exclusions.if_contains(code);
  if (list == nullptr) return false;
  const auto& values = list->as_array();
  return values.empty() || std::ranges::find(values, boost::json::value(argument)) != values.end();
}

RowKey View::activeUser() const {
  const Row* row = project();
  return row == nullptr ? 0 : integer(cell<ProjectEntry>(*row, "activeUserId"));
}

bool View::isTrackingGoingOff() const {
  if (!call) return false;
  const bool isSwitch = call->name == "setTrackingAvailability" || call->name == "initialize";
  return isSwitch && call->arguments.at(0) == "disable";
}

std::string canonical(const boost::json::value& value) {
  if (const auto* object = value.if_object()) {
    std::map<std::string, std::string> members;
    for (const auto& [key, member] : *object) members.emplace(key, canonical(member));
    std::string text = "{";
    for (const auto& [key, member] : members) text += key + ":" + member + ",";
    return text + "}";
  }
  if (const auto* array = value.if_array()) {
    std::string text = "[";
    for (const auto& element : *array) text += canonical(element) + ",";
    return text + "]";
  }
  const double* number = value.if_double();
  if (number != nullptr && *number == std::floor(*number) && std::abs(*number) < 1e15) {
    return std::to_string(static_cast<std::int64_t>(*number));
  }
  return boost::json::serialize(value);
}

std::int64_t integer(const Cell& cell) {
  return cell ? std::stoll(*cell) : 0;
}

}  // namespace pelorino
