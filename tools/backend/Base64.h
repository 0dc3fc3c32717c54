#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace pelorino::backend {

/// The bytes of a standard Base64 text: padded, without line breaks. Absent for anything else.
[[nodiscard]] std::optional<std::string> decodeBase64(std::string_view text);

}  // namespace pelorino::backend
