#pragma once

#include <string>
#include <string_view>

namespace pelorino {

/// Standard Base64 with padding, in one line.
[[nodiscard]] std::string base64(std::string_view bytes);

}  // namespace pelorino
