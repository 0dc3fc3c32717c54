#pragma once

#include <string>

namespace pelorino {

/// True for a text that an HTTP or HTTPS request can be made of as it stands: printable ASCII
/// without blanks, with a scheme and a host. Nothing is escaped for the caller. Any thread.
[[nodiscard]] bool isValidHttpUrl(const std::string& url);

}  // namespace pelorino
