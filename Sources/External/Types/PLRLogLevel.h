#pragma once

#include <array>
#include <cstddef>
#include <optional>

/// How much the library logs. A line passes when its level is not above the level that is set.
enum class PLRLogLevel : int {
  unknown = 0,  ///< Not set. In a configuration it keeps the level that is set.
  no = 1,       ///< No lines.
  error = 2,    ///< Failures and refused calls. The default.
  warning = 3,  ///< Repaired input, such as a text that was cut.
  info = 4,     ///< Changes of state that the host should see.
  debug = 5,    ///< Each step of the work.
};

/// All levels, in the order of their raw values.
inline constexpr std::array<PLRLogLevel, 6> PLRLogLevelAllCases = {
    PLRLogLevel::unknown, PLRLogLevel::no,   PLRLogLevel::error,
    PLRLogLevel::warning, PLRLogLevel::info, PLRLogLevel::debug,
};

/// "UNKNOWN", "NO", "ERROR", "WARNING", "INFO" or "DEBUG"; "UNKNOWN" for an unknown number.
[[nodiscard]] constexpr const char* description(PLRLogLevel level) noexcept {
  constexpr std::array<const char*, 6> texts = {"UNKNOWN", "NO",   "ERROR",
                                                "WARNING", "INFO", "DEBUG"};
  const auto raw = static_cast<std::size_t>(level);
  return raw < texts.size() ? texts[raw] : texts[0];
}

/// The level with this raw value, 0 to 5; absent for any other number.
[[nodiscard]] constexpr std::optional<PLRLogLevel> PLRLogLevelFromRaw(int raw) noexcept {
  if (raw < 0 || raw > static_cast<int>(PLRLogLevel::debug)) return std::nullopt;
  return static_cast<PLRLogLevel>(raw);
}
