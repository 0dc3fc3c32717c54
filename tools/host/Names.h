#pragma once

#include <pelorino/PLRAccrualType.h>
#include <pelorino/PLRGender.h>
#include <pelorino/PLRHost.h>
#include <pelorino/PLRLogLevel.h>
#include <pelorino/PLRTrackingStatus.h>

#include <string_view>

namespace pelorino::host {

/// The named values of command lines: the enumerators, spelled as in C++. Another text throws
/// CommandError.
[[nodiscard]] PLRLogLevel logLevelOf(std::string_view name);
[[nodiscard]] PLRTrackingStatus trackingStatusOf(std::string_view name);
[[nodiscard]] PLRApplicationState applicationStateOf(std::string_view name);
[[nodiscard]] PLRAccrualType accrualTypeOf(std::string_view name);
[[nodiscard]] PLRGender genderOf(std::string_view name);

[[nodiscard]] std::string_view nameOf(PLRLogLevel level);

}  // namespace pelorino::host
