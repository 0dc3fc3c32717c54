#pragma once

#include <cstdint>
#include <type_traits>
#include <variant>

/// A number or `bool` as the library keeps it.
using PLRNumber = std::variant<bool, std::int64_t, double>;

/// Converts any arithmetic type. An integer above 9223372036854775807 becomes a `double`.
template <class T>
requires std::is_arithmetic_v<T>
[[nodiscard]] PLRNumber PLRNumberOf(T value) noexcept {
  if constexpr (std::is_same_v<T, bool>) {
    return value;
  } else if constexpr (std::is_floating_point_v<T>) {
    return static_cast<double>(value);
  } else {
    const auto integer = static_cast<std::int64_t>(value);
    const bool isBeyond = std::is_unsigned_v<T> && integer < 0;
    return isBeyond ? PLRNumber(static_cast<double>(value)) : PLRNumber(integer);
  }
}
