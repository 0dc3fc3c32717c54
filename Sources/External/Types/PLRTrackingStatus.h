#pragma once

#include <array>
#include <cstddef>
#include <optional>

/// Whether the library may collect and send anything.
enum class PLRTrackingStatus : int {
  unknown = 0,  ///< Keeps the stored setting.
  enable = 1,
  disable = 2,
};

/// "UNKNOWN", "ENABLE" or "DISABLE"; "UNKNOWN" for an unknown number.
[[nodiscard]] constexpr const char* description(PLRTrackingStatus status) noexcept {
  constexpr std::array<const char*, 3> texts = {"UNKNOWN", "ENABLE", "DISABLE"};
  const auto raw = static_cast<std::size_t>(status);
  return raw < texts.size() ? texts[raw] : texts[0];
}

/// The status with this raw value, 0 to 2; absent for any other number.
[[nodiscard]] constexpr std::optional<PLRTrackingStatus> PLRTrackingStatusFromRaw(
    int raw) noexcept {
  if (raw < 0 || raw > static_cast<int>(PLRTrackingStatus::disable)) return std::nullopt;
  return static_cast<PLRTrackingStatus>(raw);
}
