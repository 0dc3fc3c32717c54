#include <gtest/gtest.h>

#include <string>

#include "Text.h"

namespace pelorino {
namespace {

const std::string replaced = "\xEF\xBF\xBD";

TEST(Text, RepairReplacesEachLongestBeginningOfACharacter) {
  struct Case {
    const char* label;
    std::string text;
    std::string want;
  };
  const Case cases[] = {
      {"empty", "", ""},
      {"ASCII longer than a word", "abcdefghijk", "abcdefghijk"},
      {"two, three and four bytes", "\u00E9\u20AC\U0001F600", "\u00E9\u20AC\U0001F600"},
      {"a NUL is a character", std::string("a\0b", 3), std::string("a\0b", 3)},
      {"a lone continuation", "a\x80z", "a" + replaced + "z"},
      {"cut off at the end", "12345678\xF0\x9F\x98", "12345678" + replaced},
      {"cut off by ASCII", "\xE2\x82z", replaced + "z"},
      {"overlong slash", "\xC0\xAF", replaced + replaced},
      {"overlong in three bytes", "\xE0\x80\x80", replaced + replaced + replaced},
      {"a surrogate", "\xED\xA0\x80", replaced + replaced + replaced},
      {"beyond the last code point", "\xF4\x90\x80\x80", replaced + replaced + replaced + replaced},
      {"a lead that is none", "\xFF\xFE", replaced + replaced},
      {"good after bad", "\xC3\u00E9\xC3", replaced + "\u00E9" + replaced},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    EXPECT_EQ(repairUtf8(c.text), c.want);
  }
}

TEST(Text, CleaningRemovesControlAndFormatCharactersOnly) {
  struct Case {
    const char* label;
    std::string text;
    std::string want;
  };
  const Case cases[] = {
      {"nothing to remove", "plain text", "plain text"},
      {"ASCII controls", std::string("\0a\tb\r\nc\x1F\x7F", 9), "abc"},
      {"only controls", "\n\u0085\u200B\u200D", ""},
      {"Cc above ASCII", "a\u0080b\u009Fc", "abc"},
      {"Cf: soft hyphen, joiner, mark of order, byte order mark, tag",
       "s\u00ADj\u200Do\u202Eb\uFEFFt\U000E0041", "sjobt"},
      {"no-break space, accent, variation selector, private use stay",
       "\u00A0e\u0301\u2764\uFE0F\uE000", "\u00A0e\u0301\u2764\uFE0F\uE000"},
      {"line and paragraph separators are of other categories", "\u2028\u2029", "\u2028\u2029"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    EXPECT_EQ(cleaned(c.text), c.want);
  }
}

TEST(Text, CharactersAreWhatAUserSees) {
  struct Case {
    const char* label;
    std::string text;
    std::size_t count;
    std::string firstTwo;
  };
  const std::string family = "\U0001F468\u200D\U0001F469\u200D\U0001F467";
  const std::string france = "\U0001F1EB\U0001F1F7";
  const Case cases[] = {
      {"empty", "", 0, ""},
      {"ASCII", "abc", 3, "ab"},
      {"CR LF is one, LF CR are two", "\r\n\n\rx", 4, "\r\n\n"},
      {"an accent belongs to its letter", "e\u0301xy", 3, "e\u0301x"},
      {"a joined family", family + "ab", 3, family + "a"},
      {"flags pair up", france + france + france, 3, france + france},
      {"a half flag at the end", france + "\U0001F1EB", 2, france + "\U0001F1EB"},
      {"a skin tone", "\U0001F44D\U0001F3FD!?", 3, "\U0001F44D\U0001F3FD!"},
      {"Hangul from parts", "\u1112\u1161\u11ABxy", 3, "\u1112\u1161\u11ABx"},
      {"an accent at the start", "\u0301ab", 3, "\u0301a"},
      {"an accent after ASCII after ASCII", "abc\u0301", 3, "ab"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    EXPECT_EQ(characterCount(c.text), c.count);
    EXPECT_EQ(prefix(c.text, 2), c.firstTwo);
    EXPECT_EQ(prefix(c.text, 0), "");
    EXPECT_EQ(prefix(c.text, c.count), c.text);
  }
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
  EXPECT_EQ(cleaned(joined).size(), joined.size() / 2);
  EXPECT_EQ(repairUtf8(broken).size(), size / 5 * 4);
  EXPECT_EQ(characterCount("a" + std::string(size, '\x80')), size + 1);
}

}  // namespace
}  // namespace pelorino
