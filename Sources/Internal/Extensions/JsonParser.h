#pragma once

#include <cstddef>
#include <string_view>

#include "AnyCodable.h"

namespace pelorino {

/// Throws PLRError when the text is not exactly one JSON value in valid UTF-8, nested no deeper
/// than `maximumDepth`, whose numbers a double can hold; also for an exponent beyond 32 bits. Keeps
/// nothing in memory.
void checkJson(std::string_view text, std::size_t maximumDepth);

/// Builds the value of such a text; also throws for more than `maximumValues` of them, which is
/// what bounds the memory.
[[nodiscard]] AnyCodable parseJson(std::string_view text, std::size_t maximumDepth,
                                   std::size_t maximumValues);

}  // namespace pelorino
