#include "Text.h"

#include <utf8proc.h>

#include <cstdint>
#include <cstring>

namespace pelorino {
namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";

std::uint8_t byteAt(std::string_view text, std::size_t at) {
  return static_cast<std::uint8_t>(text[at]);
}

bool isAscii(std::uint8_t byte) {
  return byte < 0x80;
}

/// Position of the first byte from `at` on that is not ASCII, or the end.
std::size_t skipAscii(std::string_view text, std::size_t at) {
  constexpr std::uint64_t highBits = 0x8080808080808080U;
  for (std::uint64_t word = 0; at + sizeof word <= text.size(); at += sizeof word) {
    std::memcpy(&word, text.data() + at, sizeof word);
    if ((word & highBits) != 0) break;
  }
  while (at < text.size() && isAscii(byteAt(text, at))) ++at;
  return at;
}

struct Sequence {
  std::size_t length;
  bool wellFormed;
};

/// The sequence of bytes at `at`: a whole character, or as many bytes as could begin one.
Sequence sequenceAt(std::string_view text, std::size_t at) {
  const std::uint8_t lead = byteAt(text, at);
  if (isAscii(lead)) return {1, true};
  if (lead < 0xC2 || lead > 0xF4) return {1, false};
  const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  // The range of the second byte excludes overlong forms, surrogates and values above U+10FFFF.
  std::uint8_t low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  std::uint8_t high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  for (std::size_t i = 1; i < length; ++i) {
    if (at + i >= text.size()) return {i, false};
    const std::uint8_t byte = byteAt(text, at + i);
    if (byte < low || byte > high) return {i, false};
    low = 0x80;
    high = 0xBF;
  }
  return {length, true};
}

/// Position of the first ill-formed sequence from `at` on, or the end.
std::size_t skipWellFormed(std::string_view text, std::size_t at) {
  while ((at = skipAscii(text, at)) < text.size()) {
    const Sequence sequence = sequenceAt(text, at);
    if (!sequence.wellFormed) break;
    at += sequence.length;
  }
  return at;
}

struct CodePoint {
  utf8proc_int32_t value;
  std::size_t length;
};

CodePoint codePointAt(std::string_view text, std::size_t at) {
  const auto* bytes = reinterpret_cast<const utf8proc_uint8_t*>(text.data() + at);
  utf8proc_int32_t value = 0;
  const auto length =
      utf8proc_iterate(bytes, static_cast<utf8proc_ssize_t>(text.size() - at), &value);
  if (length <= 0) return {0xFFFD, 1};
  return {value, static_cast<std::size_t>(length)};
}

bool isControlOrFormat(CodePoint character) {
  if (character.value < 0x80) return character.value < 0x20 || character.value == 0x7F;
  const auto category = utf8proc_category(character.value);
  return category == UTF8PROC_CATEGORY_CC || category == UTF8PROC_CATEGORY_CF;
}

/// Position of the first character from `at` on that cleaning removes, or the end.
std::size_t skipClean(std::string_view text, std::size_t at) {
  while (at < text.size()) {
    const CodePoint character = codePointAt(text, at);
    if (isControlOrFormat(character)) break;
    at += character.length;
  }
  return at;
}

/// End of the grapheme cluster that begins at `at`. The text before `at` does not matter: a cluster
/// alone decides where it ends.
std::size_t clusterEnd(std::string_view text, std::size_t at) {
  CodePoint before = codePointAt(text, at);
  at += before.length;
  utf8proc_int32_t state = 0;
  while (at < text.size()) {
    const std::uint8_t next = byteAt(text, at);
    // Fast path: two ASCII characters are two clusters, except CR LF.
    if (before.value < 0x80 && isAscii(next) && !(before.value == '\r' && next == '\n')) break;
    const CodePoint after = codePointAt(text, at);
    if (utf8proc_grapheme_break_stateful(before.value, after.value, &state)) break;
    before = after;
    at += after.length;
  }
  return at;
}

}  // namespace

std::string repairUtf8(std::string text) {
  std::size_t at = skipWellFormed(text, 0);
  if (at == text.size()) return text;
  std::string repaired;
  repaired.reserve(text.size() + replacement.size());
  std::size_t start = 0;
  while (at < text.size()) {
    repaired.append(text, start, at - start);
    repaired += replacement;
    start = at + sequenceAt(text, at).length;
    at = skipWellFormed(text, start);
  }
  repaired.append(text, start);
  return repaired;
}

std::string cleaned(std::string text) {
  std::size_t at = skipClean(text, 0);
  if (at == text.size()) return text;
  std::string clean;
  clean.reserve(text.size());
  std::size_t start = 0;
  while (at < text.size()) {
    clean.append(text, start, at - start);
    start = at + codePointAt(text, at).length;
    at = skipClean(text, start);
  }
  clean.append(text, start);
  return clean;
}

std::size_t characterCount(std::string_view text) {
  std::size_t count = 0;
  for (std::size_t at = 0; at < text.size(); at = clusterEnd(text, at)) ++count;
  return count;
}

std::string_view prefix(std::string_view text, std::size_t count) {
  if (text.size() <= count) return text;  // No character is shorter than a byte.
  std::size_t at = 0;
  while (count > 0 && at < text.size()) {
    at = clusterEnd(text, at);
    --count;
  }
  return text.substr(0, at);
}

}  // namespace pelorino
