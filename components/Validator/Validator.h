#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "AnyCodable.h"
#include "Label.h"

namespace pelorino {

/// Checks of the arguments of public operations. Each returns true, or writes its message at
/// `error` with the labels of the operation and the argument and returns false.
///
/// Threads: the checks, any; the excluded options, the incomeQueue only.
class Validator final {
 public:
  /// From event code to the argument values that are switched off; an empty list switches off the
  /// whole event.
  using ExcludedOptions = std::map<std::string, std::vector<AnyCodable>>;

  Validator() = delete;

  /// True for a text or a table with content.
  template <class Container>
  [[nodiscard]] static bool notNullOrEmpty(std::string_view method, const Label& argument,
                                           const Container& value) {
    return notNullOrEmpty(method, argument, true, !value.empty());
  }
  template <class Container>
  [[nodiscard]] static bool notNullOrEmpty(std::string_view method, const Label& argument,
                                           const std::optional<Container>& value) {
    return notNullOrEmpty(method, argument, value.has_value(), value && !value->empty());
  }

  /// Bounds are inclusive. A NaN passes.
  [[nodiscard]] static bool inInterval(std::string_view method, const Label& argument,
                                       std::int64_t value, std::int64_t min, std::int64_t max);
  [[nodiscard]] static bool inInterval(std::string_view method, const Label& argument, double value,
                                       double min, double max);

  /// False for a NaN only.
  [[nodiscard]] static bool validateDoubleNAN(std::string_view method, const Label& argument,
                                              double value);

  /// A missing text fails without a message.
  [[nodiscard]] static bool equalStringLength(std::string_view method, const Label& argument,
                                              const std::optional<std::string>& value,
                                              std::size_t length);

  /// True for a boolean, a number and a text.
  [[nodiscard]] static bool validType(std::string_view method, const Label& argument,
                                      const AnyCodable& value);

  /// True if the backend has switched off the event, or the event with this argument; that is
  /// logged at `info`.
  [[nodiscard]] static bool isExcluded(const std::string& code,
                                       const std::optional<AnyCodable>& argument = std::nullopt);

  /// Absent until a configuration from the backend has been applied.
  [[nodiscard]] static const std::optional<ExcludedOptions>& excludedOptions();
  static void setExcludedOptions(std::optional<ExcludedOptions> options);

 private:
  static bool notNullOrEmpty(std::string_view method, const Label& argument, bool isThere,
                             bool hasContent);
};

}  // namespace pelorino
