#include "Names.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "Arguments.h"

namespace pelorino::host {

namespace {

template <class Value>
struct Named {
  std::string_view name;
  Value value;
};

constexpr std::array<Named<PLRLogLevel>, 6> logLevels = {{
    {"unknown", PLRLogLevel::unknown},
    {"no", PLRLogLevel::no},
    {"error", PLRLogLevel::error},
    {"warning", PLRLogLevel::warning},
    {"info", PLRLogLevel::info},
    {"debug", PLRLogLevel::debug},
}};

constexpr std::array<Named<PLRTrackingStatus>, 3> trackingStatuses = {{
    {"unknown", PLRTrackingStatus::unknown},
    {"enable", PLRTrackingStatus::enable},
    {"disable", PLRTrackingStatus::disable},
}};

constexpr std::array<Named<PLRApplicationState>, 3> applicationStates = {{
    {"active", PLRApplicationState::active},
    {"inactive", PLRApplicationState::inactive},
    {"background", PLRApplicationState::background},
}};

constexpr std::array<Named<PLRAccrualType>, 2> accrualTypes = {{
    {"earned", PLRAccrualType::earned},
    {"bought", PLRAccrualType::bought},
}};

constexpr std::array<Named<PLRGender>, 3> genders = {{
    {"Unknown", PLRGender::Unknown},
    {"Male", PLRGender::Male},
    {"Female", PLRGender::Female},
}};

template <class Table>
auto valueOf(const Table& table, std::string_view name, std::string_view what) {
  const auto found = std::ranges::find_if(table, [&](const auto& row) { return row.name == name; });
  if (found == table.end()) throw CommandError(fmt::format("\"{}\" is no {}", name, what));
  return found->value;
}

}  // namespace

PLRLogLevel logLevelOf(std::string_view name) {
  return valueOf(logLevels, name, "log level");
}

PLRTrackingStatus trackingStatusOf(std::string_view name) {
  return valueOf(trackingStatuses, name, "tracking status");
}

PLRApplicationState applicationStateOf(std::string_view name) {
  return valueOf(applicationStates, name, "application state");
}

PLRAccrualType accrualTypeOf(std::string_view name) {
  return valueOf(accrualTypes, name, "accrual type");
}

PLRGender genderOf(std::string_view name) {
  return valueOf(genders, name, "gender");
}

std::string_view nameOf(PLRLogLevel level) {
  return std::ranges::find(logLevels, level, &Named<PLRLogLevel>::value)->name;
}

}  // namespace pelorino::host
