// Texts: what is repaired is UTF-8, what is cleaned is clean, and no character is cut in two.

#include <utf8proc.h>

#include <vector>

#include "Fuzz.h"
#include "Text.h"

namespace pelorino::fuzz {
namespace {

struct CodePoint {
  utf8proc_int32_t value;
  std::size_t at;
  std::size_t length;
};

/// Absent bytes at the end mean that the text is no UTF-8 from there on.
std::vector<CodePoint> codePointsOf(std::string_view text) {
  std::vector<CodePoint> points;
  for (std::size_t at = 0; at < text.size();) {
    utf8proc_int32_t value = 0;
    const auto length =
        utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data()) + at,
                         static_cast<utf8proc_ssize_t>(text.size() - at), &value);
    if (length <= 0) break;
    points.push_back({value, at, static_cast<std::size_t>(length)});
    at += points.back().length;
  }
  return points;
}

bool isUtf8(std::string_view text) {
  const auto points = codePointsOf(text);
  return text.empty() ||
         (!points.empty() && points.back().at + points.back().length == text.size());
}

/// Where characters begin, and the end. Found in one go over the whole text.
std::vector<std::size_t> boundariesOf(std::string_view text) {
  std::vector<std::size_t> boundaries;
  utf8proc_int32_t before = 0;
  utf8proc_int32_t state = 0;
  for (const CodePoint& point : codePointsOf(text)) {
    const bool isBreak =
        point.at == 0 || utf8proc_grapheme_break_stateful(before, point.value, &state);
    if (isBreak) boundaries.push_back(point.at);
    before = point.value;
  }
  boundaries.push_back(text.size());
  return boundaries;
}

void checkRepair(std::string_view text, const std::string& repaired) {
  FUZZ_REQUIRE(isUtf8(repaired));
  FUZZ_REQUIRE(repairUtf8(repaired) == repaired);
  FUZZ_REQUIRE((repaired == text) == isUtf8(text));
  FUZZ_REQUIRE(repaired.size() <= 3 * text.size());
}

void checkCleaning(const std::string& text) {
  std::string expected;
  for (const CodePoint& point : codePointsOf(text)) {
    const auto category = utf8proc_category(point.value);
    if (category == UTF8PROC_CATEGORY_CC || category == UTF8PROC_CATEGORY_CF) continue;
    expected.append(text, point.at, point.length);
  }
  FUZZ_REQUIRE(cleaned(text) == expected);
  FUZZ_REQUIRE(cleaned(expected) == expected);
}

void checkPrefix(std::string_view text, std::size_t count) {
  const std::string_view kept = prefix(text, count);
  const std::size_t all = characterCount(text);
  FUZZ_REQUIRE(text.starts_with(kept));
  FUZZ_REQUIRE(characterCount(kept) == std::min(count, all));
  FUZZ_REQUIRE(prefix(kept, count) == kept);
  FUZZ_REQUIRE((kept.size() == text.size()) == (all <= count));
}

void checkCharacters(std::string_view text, std::size_t count) {
  const auto boundaries = boundariesOf(text);
  FUZZ_REQUIRE(characterCount(text) == boundaries.size() - 1);
  FUZZ_REQUIRE(prefix(text, count).size() == boundaries[std::min(count, boundaries.size() - 1)]);
}

}  // namespace
}  // namespace pelorino::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pelorino;
  if (size == 0) return 0;
  const std::size_t count = data[0];
  const std::string_view text = fuzz::textOf(data + 1, size - 1);
  const std::string repaired = repairUtf8(std::string(text));
  fuzz::checkRepair(text, repaired);
  fuzz::checkCleaning(repaired);
  fuzz::checkPrefix(text, count);
  fuzz::checkPrefix(repaired, count);
  fuzz::checkCharacters(repaired, count);
  (void)cleaned(std::string(text));
  return 0;
}
