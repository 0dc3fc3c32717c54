#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "PeopleReservedKeys.h"
#include "PeopleValueType.h"

namespace pelorino {

/// What the operations of the user's card demand of their arguments. A rule takes the raw arguments
/// and gives the repaired ones, or nothing when they are rejected; the messages are written here.
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

  /// The keys that passed, in their order; absent when none did, without a cancel message.
  [[nodiscard]] static std::optional<std::vector<std::string>> validateUnset(
      std::string_view method, std::vector<std::string> keys);

  /// False for a value that the reserved key must not hold.
  [[nodiscard]] static bool validateReservedValueType(PeopleReservedKeys key,
                                                      const PeopleValueType& value);
};

}  // namespace pelorino
