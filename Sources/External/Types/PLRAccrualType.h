#pragma once

#include <array>
#include <cstddef>
#include <optional>

/// How a user got an amount of currency. An unknown number counts as `earned`.
enum class PLRAccrualType : int {
  earned = 0,
  bought = 1,
};

/// "earned" or "bought"; "earned" for an unknown number.
[[nodiscard]] constexpr const char* description(PLRAccrualType type) noexcept {
  constexpr std::array<const char*, 2> texts = {"earned", "bought"};
  const auto raw = static_cast<std::size_t>(type);
  return raw < texts.size() ? texts[raw] : texts[0];
}

/// The type with this raw value, 0 or 1; absent for any other number.
[[nodiscard]] constexpr std::optional<PLRAccrualType> PLRAccrualTypeFromRaw(int raw) noexcept {
  if (raw < 0 || raw > static_cast<int>(PLRAccrualType::bought)) return std::nullopt;
  return static_cast<PLRAccrualType>(raw);
}
