#pragma once

#include <pelorino/PLRExport.h>
#include <pelorino/PLRLogLevel.h>
#include <pelorino/PLRTrackingStatus.h>

#include <cstdint>
#include <optional>
#include <string>

struct PLRAnalyticsConfigurationLocal;

/// What a host may decide at the start. `initialize` copies it: later changes reach nothing.
///
/// Threads: belongs to the thread that fills it.
class PLR_EXPORT PLRAnalyticsConfiguration {
 public:
  /// Taken over before anything else happens; `unknown` leaves the level alone.
  PLRLogLevel logLevel = PLRLogLevel::unknown;

  /// The user to activate, at most 64 characters; a longer one is cut. The empty text asks for the
  /// default user, who stands for the device. Absent: the user who was active last.
  std::optional<std::string> userId;

  /// Level of that user, 1 to 2147483646; anything else is ignored with a log line.
  std::optional<std::int64_t> currentLevel;

  /// Switches tracking on or off, for good; `unknown` leaves it as it was.
  PLRTrackingStatus trackingAvailability = PLRTrackingStatus::unknown;

  /// The values that are set, a line each.
  [[nodiscard]] std::string description() const;

 private:
  friend class PLRAnalytics;

  /// The copy that the library keeps.
  [[nodiscard]] PLRAnalyticsConfigurationLocal cloneToLocal() const;
};
