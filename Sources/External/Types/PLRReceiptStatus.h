#pragma once

#include <array>
#include <cstddef>
#include <optional>

/// The result of the verification of a receipt.
enum class PLRReceiptStatus : int {
  valid = 0,
  notValid = 1,
  serverError = 2,  ///< The backend could not be reached or refused.
  sandbox = 3,      ///< A receipt of the store's test environment.
  internalError = 4,
};

/// "Receipt valid", "Receipt not valid", "Receipt server error", "Receipt sandbox" or "Receipt
/// internal error"; the last also for an unknown number.
[[nodiscard]] constexpr const char* description(PLRReceiptStatus status) noexcept {
  constexpr std::array<const char*, 5> texts = {"Receipt valid", "Receipt not valid",
                                                "Receipt server error", "Receipt sandbox",
                                                "Receipt internal error"};
  const auto raw = static_cast<std::size_t>(status);
  return raw < texts.size() ? texts[raw] : texts.back();
}

/// The status with this raw value, 0 to 4; absent for any other number.
[[nodiscard]] constexpr std::optional<PLRReceiptStatus> PLRReceiptStatusFromRaw(int raw) noexcept {
  if (raw < 0 || raw > static_cast<int>(PLRReceiptStatus::internalError)) return std::nullopt;
  return static_cast<PLRReceiptStatus>(raw);
}
