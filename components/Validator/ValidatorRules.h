#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "AnyCodable.h"
#include "PLRAnalyticsConfigurationLocal.h"

namespace pelorino {

/// What each public operation demands of its arguments. A rule takes the raw arguments and gives
/// the repaired ones, or nothing when the call is rejected; the messages are written here.
///
/// Threads: the incomeQueue.
class ValidatorRules final {
 public:
  using Parameters = std::map<std::string, AnyCodable>;

  struct CustomEvent {
    std::string name;
    Parameters params;
  };

  ValidatorRules() = delete;

  [[nodiscard]] static std::optional<std::string> validateInitializeKey(std::string key);

  /// A bad field is removed; the configuration itself is never rejected.
  [[nodiscard]] static std::optional<PLRAnalyticsConfigurationLocal> validateInitialize(
      std::optional<PLRAnalyticsConfigurationLocal> configuration);

  /// An empty id passes: it means the default user. Writes no cancel message; the caller does.
  [[nodiscard]] static std::optional<std::string> validateUserId(std::string_view method,
                                                                 std::string userId);

  /// True for a level that a user can have.
  [[nodiscard]] static bool validateLevel(std::string_view method, std::int64_t level);

  /// Bad parameters are left out; only a bad name rejects. Parameters whose keys become equal
  /// overwrite each other, the later one in the order of the original keys stays.
  [[nodiscard]] static std::optional<CustomEvent> validateCustomEvent(std::string name,
                                                                      const Parameters& params);

  static void notifyThatMethodExecutionWasCanceled(std::string_view method);
};

}  // namespace pelorino
