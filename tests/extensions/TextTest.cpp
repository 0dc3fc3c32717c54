#include <gtest/gtest.h>

#include <string>

#include "Text.h"

namespace pelorino {
namespace {

const std::string replaced = "\xEF\xBF\xBD";

TEST(Text, RepairReplacesEachLongestBeginningOfACharacter) {
  const std::string good("abcdefghijk \u00E9\u20AC\U0001F600 a NUL \0 is one", 36);
  EXPECT_EQ(repairUtf8(good), good);
  EXPECT_EQ(repairUtf8("a\x80z"), "a" + replaced + "z");
  EXPECT_EQ(repairUtf8("12345678\xF0\x9F\x98"), "12345678" + replaced) << "cut off at the end";
  EXPECT_EQ(repairUtf8("\xE2\x82z"), replaced + "z") << "cut off by ASCII";
  EXPECT_EQ(repairUtf8("\xC0\xAF"), replaced + replaced) << "overlong";
  EXPECT_EQ(repairUtf8("\xED\xA0\x80"), replaced + replaced + replaced) << "a surrogate";
  EXPECT_EQ(repairUtf8("\xF4\x90\x80\x80"), replaced + replaced + replaced + replaced)
      << "beyond the last code point";
  EXPECT_EQ(repairUtf8("\xFF\xC3\u00E9\xC3"), replaced + replaced + "\u00E9" + replaced);
}

TEST(Text, CleaningRemovesControlAndFormatCharactersOnly) {
  EXPECT_EQ(cleaned(std::string("\0a\tb\r\nc\x1F\x7F", 9)), "abc");
  EXPECT_EQ(cleaned("\n\u0080\u009F\u200B\u200D"), "");
  EXPECT_EQ(cleaned("s\u00ADj\u200Do\u202Eb\uFEFFt\U000E0041"), "sjobt");
  const std::string stays = "plain \u00A0e\u0301\u2764\uFE0F\uE000\u2028\u2029";
  EXPECT_EQ(cleaned(stays), stays);
}

TEST(Text, CharactersAreWhatAUserSees) {
  const auto expectCharacters = [](const std::string& text, std::size_t count,
                                   const std::string& firstTwo) {
    SCOPED_TRACE(text);
    EXPECT_EQ(characterCount(text), count);
    EXPECT_EQ(prefix(text, 2), firstTwo);
    EXPECT_EQ(prefix(text, 0), "");
    EXPECT_EQ(prefix(text, count), text);
  };
  const std::string family = "\U0001F468\u200D\U0001F469\u200D\U0001F467";
  const std::string france = "\U0001F1EB\U0001F1F7";
  expectCharacters("", 0, "");
  expectCharacters("\r\n\n\rx", 4, "\r\n\n");
  expectCharacters(family + "ab", 3, family + "a");
  expectCharacters(france + france + france, 3, france + france);
  expectCharacters("\u0301abc\u0301", 4, "\u0301a");
}

// Ten megabytes each; an operation that looks back over the text would not end within the test's
// time.
TEST(Text, LargeTextsTakeLinearTime) {
  constexpr std::size_t size = 10'000'000;
  std::string joined;
  std::string broken;
  for (std::size_t i = 0; i < size / 5; ++i) {
    joined += "e\u0301\u200D";
    broken += "\xF0\x9F.";
  }
  EXPECT_EQ(characterCount(std::string(size, 'x')), size);
  EXPECT_EQ(characterCount(joined), size / 5);
  EXPECT_EQ(prefix(joined, size / 5 - 1).size(), joined.size() - 6);
  EXPECT_EQ(repairUtf8(broken).size(), size / 5 * 4);
  EXPECT_EQ(characterCount("a" + std::string(size, '\x80')), size + 1);
}

}  // namespace
}  // namespace pelorino
