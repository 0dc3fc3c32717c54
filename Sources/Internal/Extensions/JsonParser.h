#pragma once

#include <cstddef>
#include <string_view>

#include "AnyCodable.h"

namespace pelorino {

/// Throws PLRError when the text is not exactly one JSON value in valid UTF-8 whose numbers a
/// double can hold; also for an exponent beyond 32 bits. Of what is nested deeper than
/// maximumJsonDepth only the brackets and quotes are looked at: nobody can read it. Keeps nothing
/// in memory.
void checkJson(std::string_view text);

/// Builds the value of such a text. Where a key stands twice in an object, the last one counts.
/// Also throws for what is nested deeper than maximumJsonDepth, and for more than `maximumValues`
/// values, which is what bounds the memory.
[[nodiscard]] AnyCodable parseJson(std::string_view text, std::size_t maximumValues);

/// Length of the value that the text begins with. Up to the end of a text that breaks off in it.
[[nodiscard]] std::size_t jsonValueLength(std::string_view json);

}  // namespace pelorino
