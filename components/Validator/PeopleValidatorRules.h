#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "PeopleReservedKeys.h"
#include "PeopleValueType.h"

namespace pelorino {

/// The rules for the arguments of the user card's operations. A rule takes the raw arguments and
/// returns the repaired ones, or nothing if it rejects them. It writes the messages.
///
/// Threads: the incomeQueue.
class PeopleValidatorRules final {
 public:
  using Property = std::pair<std::string, PeopleValueType>;

  PeopleValidatorRules() = delete;

  [[nodiscard]] static std::optional<Property> validateSet(std::string_view method, std::string key,
                                                           PeopleValueType value);
  [[nodiscard]] static std::optional<std::string> validateKey(std::string_view method,
                                                              std::string key);

  /// The keys that passed, in their order; absent if none did, without a cancel message.
  [[nodiscard]] static std::optional<std::vector<std::string>> validateUnset(
      std::string_view method, std::vector<std::string> keys);

  /// False for a value that the reserved key must not hold.
  [[nodiscard]] static bool validateReservedValueType(PeopleReservedKeys key,
                                                      const PeopleValueType& value);
};

}  // namespace pelorino
