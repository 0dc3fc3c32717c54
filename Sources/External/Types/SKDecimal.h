#pragma once

#include <charconv>
#include <string>
#include <string_view>
#include <system_error>

/// A decimal number, such as a price; 0 at first.
class SKDecimal {
 public:
  SKDecimal() = default;

  /// The shortest decimal number that is `value` when read as a `double`: 4.99 is exactly 4.99.
  SKDecimal(double value) : text_(shortest(value)) {}  // NOLINT(google-explicit-constructor)

  /// A text such as "4.99". One that is no finite number counts as 0.
  explicit SKDecimal(std::string_view text) : text_(text) {}

  [[nodiscard]] const std::string& text() const noexcept { return text_; }

 private:
  static std::string shortest(double value) {
    char digits[32];
    const auto [end, error] = std::to_chars(digits, digits + sizeof digits, value);
    return error == std::errc() ? std::string(digits, end) : std::string("0");
  }

  std::string text_ = "0";
};
