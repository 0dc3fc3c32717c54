#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace pelorino {

// Texts as UTF-8. A character is what a user sees as one: an extended grapheme cluster. Every
// operation takes time linear in the bytes that it has to look at, and is cheap for ASCII.

/// The text with every ill-formed sequence replaced by U+FFFD, one for each longest beginning of a
/// character that could still have become one. A well-formed text comes back as it is.
[[nodiscard]] std::string repairUtf8(std::string text);

/// The text without the characters of the general categories Cc and Cf (control and format). What
/// remains is joined: where they stood between two parts of a word, the parts meet.
[[nodiscard]] std::string cleaned(std::string text);

/// Number of characters. CR LF is one; a byte that is not well-formed is one.
[[nodiscard]] std::size_t characterCount(std::string_view text);

/// The first `count` characters, all of the text when it has no more. Looks no further than that.
[[nodiscard]] std::string_view prefix(std::string_view text, std::size_t count);

}  // namespace pelorino
