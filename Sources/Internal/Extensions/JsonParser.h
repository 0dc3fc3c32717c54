#pragma once

#include <cstddef>
#include <string_view>

#include "AnyCodable.h"

namespace pelorino {

/// Checks that the text is exactly one JSON value in valid UTF-8. Throws PLRError if it is not, if
/// a number is too large for a double, or if an exponent does not fit 32 bits. What is nested
/// deeper than maximumJsonDepth is not checked beyond its brackets and quotes: nobody can read it.
/// Builds nothing in memory.
void checkJson(std::string_view text);

/// Checks the text in the same way and builds its value. If an object has a key twice, the last one
/// counts. Also throws for what is nested deeper than maximumJsonDepth and, to limit the memory,
/// for more than `maximumValues` values.
[[nodiscard]] AnyCodable parseJson(std::string_view text, std::size_t maximumValues);

/// Length of the value that the text begins with. If the text ends inside it: up to that end.
[[nodiscard]] std::size_t jsonValueLength(std::string_view json);

}  // namespace pelorino
