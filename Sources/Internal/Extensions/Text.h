#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace pelorino {

// Functions on UTF-8 texts. A character is what a user sees as one: an extended grapheme cluster.
// All take linear time and are fast for ASCII. Any thread.

/// Replaces each ill-formed sequence by U+FFFD. Bytes that begin a character but do not complete it
/// are replaced together. A well-formed text does not change.
[[nodiscard]] std::string repairUtf8(std::string text);

/// Removes control and format characters (general categories Cc and Cf). Nothing takes their place.
[[nodiscard]] std::string cleaned(std::string text);

/// Number of characters. CR LF counts as one, and so does each byte that is not valid UTF-8.
[[nodiscard]] std::size_t characterCount(std::string_view text);

/// The first `count` characters, or the whole text if it is shorter. Reads no further.
[[nodiscard]] std::string_view prefix(std::string_view text, std::size_t count);

}  // namespace pelorino
