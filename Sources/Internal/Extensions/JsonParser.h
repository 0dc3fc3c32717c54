#pragma once

#include <cstddef>
#include <string_view>

#include "AnyCodable.h"

namespace pelorino {

/// Checks that the text is exactly one JSON value in valid UTF-8. Throws PLRError if it is not, if
/// it is nested deeper than `maximumDepth`, if a number is too large for a double, or if an
/// exponent does not fit 32 bits. Builds nothing in memory.
void checkJson(std::string_view text, std::size_t maximumDepth);

/// Checks the text in the same way and builds its value. To limit the memory, it also throws if
/// there are more than `maximumValues` values. It also throws if an object has a key twice.
[[nodiscard]] AnyCodable parseJson(std::string_view text, std::size_t maximumDepth,
                                   std::size_t maximumValues);

}  // namespace pelorino
