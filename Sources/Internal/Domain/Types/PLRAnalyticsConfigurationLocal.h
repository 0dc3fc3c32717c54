#pragma once

#include <pelorino/PLRLogLevel.h>
#include <pelorino/PLRTrackingStatus.h>

#include <cstdint>
#include <optional>
#include <string>

/// A copy of the host's configuration, made when `initialize` was called.
struct PLRAnalyticsConfigurationLocal {
  PLRLogLevel logLevel = PLRLogLevel::unknown;
  std::optional<std::string> userId;
  std::optional<std::int64_t> level;
  PLRTrackingStatus trackingAvailability = PLRTrackingStatus::unknown;
};
