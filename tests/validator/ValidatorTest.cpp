#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "Bounder.h"
#include "LogCapture.h"
#include "Validator.h"

namespace pelorino {
namespace {

using Lines = std::vector<std::string>;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double largest = std::numeric_limits<double>::max();
const std::string failed = "ERROR In the M method an error has occurred: \n\tA";

/// What a check says; `rest` is the message after the labels, empty for none.
struct Verdict {
  const char* label;
  bool passes;
  std::string rest;
};

template <class Check>
void expectVerdict(const Verdict& want, const Check& check) {
  SCOPED_TRACE(want.label);
  const LogCapture log(PLRLogLevel::error);
  EXPECT_EQ(check(), want.passes);
  EXPECT_EQ(log.lines(), want.rest.empty() ? Lines{} : Lines{failed + want.rest});
}

TEST(Validator, TellsMissingFromEmpty) {
  using Text = std::optional<std::string>;
  using Table = std::optional<std::map<std::string, int>>;
  expectVerdict({"text", true, ""}, [] { return Validator::notNullOrEmpty("M", "A", Text("x")); });
  expectVerdict({"empty text", false, " is empty!"},
                [] { return Validator::notNullOrEmpty("M", "A", Text("")); });
  expectVerdict({"no text", false, " is nil!"},
                [] { return Validator::notNullOrEmpty("M", "A", Text()); });
  expectVerdict({"table", true, ""}, [] {
    return Validator::notNullOrEmpty("M", "A", Table({{"k", 1}}));
  });
  expectVerdict({"empty table", false, " is empty!"},
                [] { return Validator::notNullOrEmpty("M", "A", Table(std::in_place)); });
  expectVerdict({"no table", false, " is nil!"},
                [] { return Validator::notNullOrEmpty("M", "A", Table()); });
}

TEST(Validator, IntervalsIncludeTheirBounds) {
  struct Case {
    Verdict verdict;
    std::int64_t value;
  };
  const Case integers[] = {
      {{"at the minimum", true, ""}, -2},
      {{"at the maximum", true, ""}, 2147483646},
      {{"below", false, " [-3] is less than the min [-2] permitted value!"}, -3},
      {{"above", false, " [2147483647] is greater than the max [2147483646] permitted value!"},
       2147483647},
  };
  for (const Case& c : integers) {
    expectVerdict(c.verdict,
                  [&] { return Validator::inInterval("M", "A", c.value, -2, 2147483646); });
  }
  struct DoubleCase {
    Verdict verdict;
    double value;
  };
  const DoubleCase doubles[] = {
      {{"at the maximum", true, ""}, largest},
      {{"NaN compares false with both bounds", true, ""}, nan},
      {{"just below", false, " [-0.1] is less than the min [0.0] permitted value!"}, -0.1},
      {{"infinity", false,
        " [inf] is greater than the max [1.7976931348623157e+308] permitted value!"},
       infinity},
  };
  for (const DoubleCase& c : doubles) {
    expectVerdict(c.verdict,
                  [&] { return Validator::inInterval("M", "A", c.value, 0.0, largest); });
  }
}

TEST(Validator, ChecksNumbersLengthsAndTypes) {
  expectVerdict({"NaN", false, " \n\tParameter cannot be NAN."},
                [] { return Validator::validateDoubleNAN("M", "A", nan); });
  expectVerdict({"infinity is a number", true, ""},
                [] { return Validator::validateDoubleNAN("M", "A", infinity); });

  expectVerdict({"length counts what is seen", true, ""},
                [] { return Validator::equalStringLength("M", "A", "e\u0301ur", 3); });
  expectVerdict({"length", false, " is invalid\n\tParameter [EURO] length must be equal to [3]."},
                [] { return Validator::equalStringLength("M", "A", "EURO", 3); });
  expectVerdict({"a missing text fails in silence", false, ""},
                [] { return Validator::equalStringLength("M", "A", std::nullopt, 3); });

  for (const AnyCodable& good :
       {AnyCodable(true), AnyCodable(1), AnyCodable(1U), AnyCodable(0.5), AnyCodable("x")}) {
    expectVerdict({"a type that is taken", true, ""},
                  [&] { return Validator::validType("M", "A", good); });
  }
  expectVerdict({"nothing", false, " is nil!"},
                [] { return Validator::validType("M", "A", AnyCodable()); });
  expectVerdict(
      {"list", false, " \n\tParameter must be of a valid type (Bool, Int, Double, String)."},
      [] { return Validator::validType("M", "A", AnyCodable(AnyCodable::List{})); });
}

TEST(Bounder, CutsByCharactersThatAUserSees) {
  const std::string family = "\U0001F468\u200D\U0001F469\u200D\U0001F467";
  struct Case {
    const char* label;
    std::string text;
    std::size_t limit;
    std::string want;
  };
  const Case cases[] = {
      {"at the limit", "abc", 3, "abc"},
      {"one past it", "abcd", 3, "abc"},
      {"a family is one", family + family, 2, family + family},
      {"one family too many", family + family + family, 2, family + family},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    const LogCapture log(PLRLogLevel::warning);
    EXPECT_EQ(Bounder::maxStringLength("M", "A", c.text, c.limit), c.want);
    Lines want;
    if (c.text != c.want) {
      want = {"WARNING In the M method an error has occurred:\n\tA: " + c.text +
              " is longer than it is permitted.\n\tThe string was truncated to '" +
              std::to_string(c.limit) + "'!"};
    }
    EXPECT_EQ(log.lines(), want);
  }
  EXPECT_EQ(Bounder::maxStringLength("M", "A", std::nullopt, 3), std::nullopt);
}

class Exclusion : public ::testing::Test {
 protected:
  ~Exclusion() override { Validator::setExcludedOptions(std::nullopt); }
};

TEST_F(Exclusion, MatchesAWholeEventOrOneArgument) {
  const auto isExcluded = [](const char* code, const std::optional<AnyCodable>& argument) {
    const LogCapture log(PLRLogLevel::info);
    const bool excluded = Validator::isExcluded(code, argument);
    const Lines lines = log.lines();
    EXPECT_EQ(lines.size(), excluded ? 1U : 0U);
    return lines.empty() ? std::string() : lines[0];
  };
  EXPECT_EQ(isExcluded("ce", "boss"), "") << "nothing applied yet";

  Validator::setExcludedOptions(Validator::ExcludedOptions{
      {"al", {}}, {"ce", {AnyCodable("boss")}}, {"lu", {AnyCodable(2)}}});
  EXPECT_EQ(isExcluded("al", std::nullopt), "INFO Event [al] is excluded by project configuration");
  EXPECT_EQ(isExcluded("al", "any"), "INFO Event [al] is excluded by project configuration");
  EXPECT_EQ(isExcluded("ce", "boss"),
            "INFO Event [ce] with [boss] argument is excluded by project configuration");
  EXPECT_EQ(isExcluded("lu", 2),
            "INFO Event [lu] with [2] argument is excluded by project configuration");
  EXPECT_EQ(isExcluded("lu", 2.0), "") << "kinds differ";
  EXPECT_EQ(isExcluded("ce", "level"), "");
  EXPECT_EQ(isExcluded("ce", std::nullopt), "") << "a list needs an argument";
  EXPECT_EQ(isExcluded("di", std::nullopt), "") << "a code that is not listed";
}

}  // namespace
}  // namespace pelorino
