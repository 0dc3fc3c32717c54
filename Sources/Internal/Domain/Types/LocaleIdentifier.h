#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace pelorino {

/// The region that an identifier such as "en_US" or "zh-Hant_TW" names, if it names one: ISO 3166,
/// or the three digits of a larger area.
[[nodiscard]] std::optional<std::string> regionCodeOf(std::string_view localeIdentifier);

/// The currency that it names, as "en_US@currency=EUR" does, or else the one of its region: ISO
/// 4217.
[[nodiscard]] std::optional<std::string> currencyCodeOf(std::string_view localeIdentifier);

}  // namespace pelorino
