#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "Call.h"
#include "PLRAnalyticsConfigurationLocal.h"

// The start, and who is playing.

namespace pelorino {

struct ReplaceUserIdCall;
struct SetCurrentLevelCall;

namespace ValidatorRules {
[[nodiscard]] std::optional<std::string> validateInitializeKey(std::string key);
/// A bad field is removed; the configuration itself is never rejected.
[[nodiscard]] std::optional<PLRAnalyticsConfigurationLocal> validateInitialize(
    std::optional<PLRAnalyticsConfigurationLocal> configuration);
/// An empty id passes: it means the default user. Writes no cancel message; the caller does.
[[nodiscard]] std::optional<std::string> validateUserId(std::string_view method,
                                                        std::string userId);
[[nodiscard]] std::optional<ReplaceUserIdCall> validateReplaceUserId(ReplaceUserIdCall call);
[[nodiscard]] std::optional<SetCurrentLevelCall> validateCurrentLevel(SetCurrentLevelCall call);
}  // namespace ValidatorRules

struct SetUserIdCall {
  std::string userId;

  static constexpr const char* label = "setUserId(_:)";
  [[nodiscard]] static std::optional<SetUserIdCall> rule(SetUserIdCall call);
  static constexpr auto exclusion = Exclusion::never;
};

struct ReplaceUserIdCall {
  std::string prevUserName;
  std::string userName;

  static constexpr const char* label = "replaceUserId(_:_:)";
  static constexpr auto rule = ValidatorRules::validateReplaceUserId;
  static constexpr auto exclusion = Exclusion::never;
};

struct SetCurrentLevelCall {
  std::int64_t level = 0;

  static constexpr const char* label = "setCurrentLevel(_:)";
  static constexpr auto rule = ValidatorRules::validateCurrentLevel;
  static constexpr auto exclusion = Exclusion::never;
};

struct SetTrackingAvailabilityCall {
  bool isAvailable = false;

  static constexpr const char* label = "setTrackingAvailability(_:)";
  static constexpr auto rule = noRule;
  static constexpr auto exclusion = Exclusion::never;
};

struct DeviceIdQuery {
  using Answer = std::string;
  static constexpr const char* label = "getDeviceId(_:)";
  static constexpr const char* fallback = "";
};

struct SDKVersionQuery {
  using Answer = std::string;
  static constexpr const char* label = "getSDKVersion(_:)";
  static constexpr const char* fallback = "";
};

struct UserIdQuery {
  using Answer = std::string;
  static constexpr const char* label = "getUserId(_:)";
  static constexpr const char* fallback = "";
};

struct CurrentLevelQuery {
  using Answer = std::int64_t;
  static constexpr const char* label = "getCurrentLevel(_:)";
  static constexpr std::int64_t fallback = 1;
};

struct TrackingAvailabilityQuery {
  using Answer = bool;
  static constexpr const char* label = "getTrackingAvailability(_:)";
  static constexpr bool fallback = false;
};

}  // namespace pelorino
