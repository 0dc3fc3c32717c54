#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace pelorino {

/// The region in an identifier such as "en_US" or "zh-Hant_TW": an ISO 3166 code, or three digits
/// of a larger area. Absent if there is none.
[[nodiscard]] std::optional<std::string> regionCodeOf(std::string_view localeIdentifier);

/// The ISO 4217 code of the currency: named in the identifier, as in "en_US@currency=EUR", or else
/// the currency of its region. Absent if neither is known.
[[nodiscard]] std::optional<std::string> currencyCodeOf(std::string_view localeIdentifier);

}  // namespace pelorino
