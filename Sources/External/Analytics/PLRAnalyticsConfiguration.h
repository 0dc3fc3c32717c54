#pragma once

#include <pelorino/PLRExport.h>
#include <pelorino/PLRLogLevel.h>
#include <pelorino/PLRTrackingStatus.h>

#include <cstdint>
#include <optional>
#include <string>

struct PLRAnalyticsConfigurationLocal;

/// What a host may decide at the start. `initialize` copies it; later changes have no effect.
///
/// Threads: one at a time; there is no lock.
class PLR_EXPORT PLRAnalyticsConfiguration {
 public:
  /// Takes effect before all other steps of the start. `unknown` keeps the level that is set.
  PLRLogLevel logLevel = PLRLogLevel::unknown;

  /// The user to activate, at most 64 characters; a longer identifier is cut. The empty text means
  /// the default user, who stands for the device. Absent: the user who was active last. A text of
  /// control characters only is ignored with a log line.
  std::optional<std::string> userId;

  /// The level of that user, 1 to 2147483646; anything else is ignored with a log line. Absent: the
  /// stored level.
  std::optional<std::int64_t> currentLevel;

  /// Switches tracking on or off and stores that; `unknown` keeps the stored setting.
  PLRTrackingStatus trackingAvailability = PLRTrackingStatus::unknown;

  /// One line for each value; `userId` and `currentLevel` only if they are set.
  [[nodiscard]] std::string description() const;

 private:
  friend class PLRAnalytics;

  /// The copy that the library keeps.
  [[nodiscard]] PLRAnalyticsConfigurationLocal cloneToLocal() const;
};
