#include "View.h"

#include <cmath>
#include <map>

namespace pelorino {

const Row* View::project() const {
  const auto& projects = tables.of("projects");
  return projects.empty() ? nullptr : &projects.begin()->second;
}

bool View::isTracking() const {
  const Row* row = project();
  return row != nullptr && integer((*row)[3]) != 0;
}

boost::json::object View::configuration() const {
  const Row* row = project();
  if (row == nullptr || !(*row)[7]) return {};
  return boost::json::parse(*(*row)[7]).as_object();
}

bool View::isEverythingExcluded() const {
  const auto config = configuration();
  const auto* exclude = config.if_contains("exclude");
  if (exclude == nullptr) return false;
  const auto* all = exclude->as_object().if_contains("all");
  return all != nullptr && all->as_bool();
}

bool View::isExcluded(std::string_view code, std::string_view argument) const {
  const auto* list = exclusions.if_contains(code);
  if (list == nullptr) return false;
  const auto& values = list->as_array();
  if (values.empty()) return true;
  for (const auto& value : values) {
    if (value.as_string() == argument) return true;
  }
  return false;
}

RowKey View::activeUser() const {
  const Row* row = project();
  return row == nullptr || !(*row)[2] ? 0 : integer((*row)[2]);
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
