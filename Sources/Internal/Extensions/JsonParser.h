#pragma once

#include <cstddef>
#include <string_view>

#include "AnyCodable.h"

namespace pelorino {

/// Checks that the text is exactly one JSON value in valid UTF-8. Throws PLRError if it is not, if
/// a number is too large for a double, or if an exponent does not fit 32 bits. In values nested
/// deeper than maximumJsonDepth it checks only brackets and quotes: nothing can read them. Builds
/// nothing in memory.
void checkJson(std::string_view text);

/// Checks the text in the same way and builds its value. If an object has a key twice, the last one
/// wins. Also throws if a value is nested deeper than maximumJsonDepth, or if there are more than
/// `maximumValues` values, to limit the memory.
[[nodiscard]] AnyCodable parseJson(std::string_view text, std::size_t maximumValues);

/// Length of the value that the text begins with. If the text breaks off inside it, the length of
/// the text.
[[nodiscard]] std::size_t jsonValueLength(std::string_view json);

}  // namespace pelorino
