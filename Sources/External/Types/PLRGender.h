#pragma once

#include <array>
#include <cstddef>
#include <optional>

/// The gender on a user's card.
enum class PLRGender : int {
  Unknown = 0,
  Male = 1,
  Female = 2,
};

/// "Unknown", "Male" or "Female"; "Unknown" for an unknown number.
[[nodiscard]] constexpr const char* description(PLRGender gender) noexcept {
  constexpr std::array<const char*, 3> texts = {"Unknown", "Male", "Female"};
  const auto raw = static_cast<std::size_t>(gender);
  return raw < texts.size() ? texts[raw] : texts[0];
}

/// The gender with this raw value, 0 to 2; absent for any other number.
[[nodiscard]] constexpr std::optional<PLRGender> PLRGenderFromRaw(int raw) noexcept {
  if (raw < 0 || raw > static_cast<int>(PLRGender::Female)) return std::nullopt;
  return static_cast<PLRGender>(raw);
}
