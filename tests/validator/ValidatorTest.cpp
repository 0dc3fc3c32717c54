#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "LogCapture.h"
#include "Validator.h"

namespace pelorino {
namespace {

using Lines = std::vector<std::string>;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double largest = std::numeric_limits<double>::max();
/// The check's one line is that of a failure with this message after the labels, empty for none.
template <class Check>
void expectVerdict(const std::string& message, const Check& check, bool passes) {
  SCOPED_TRACE(message);
  const LogCapture log(PLRLogLevel::error);
  EXPECT_EQ(check(), passes);
  Lines lines;
  if (!message.empty()) {
    lines = {"ERROR In the M method an error has occurred: \n\tA" + message};
  }
  EXPECT_EQ(log.lines(), lines);
}
template <class Check>
void expectVerdict(const std::string& message, const Check& check) {
  expectVerdict(message, check, message.empty());
}

TEST(Validator, TellsMissingFromEmpty) {
  const auto expectContent = [](const std::string& message, const auto& value) {
    expectVerdict(message, [&] { return Validator::notNullOrEmpty("M", "A", value); });
  };
  using Text = std::optional<std::string>;
  expectContent("", Text("x"));
  expectContent(" is empty!", Text(""));
  expectContent(" is nil!", Text());
  using Table = std::optional<std::map<std::string, int>>;
  expectContent("", Table({{"k", 1}}));
  expectContent(" is empty!", Table(std::in_place));
  expectContent(" is nil!", Table());
}

TEST(Validator, IntervalsIncludeTheirBounds) {
  const auto expectInside = [](const std::string& message, auto value, auto min, auto max) {
    expectVerdict(message, [&] { return Validator::inInterval("M", "A", value, min, max); });
  };
  using Int = std::int64_t;
  expectInside("", Int{-2}, Int{-2}, Int{5});
  expectInside("", Int{5}, Int{-2}, Int{5});
  expectInside(" [-3] is less than the min [-2] permitted value!", Int{-3}, Int{-2}, Int{5});
  expectInside(" [6] is greater than the max [5] permitted value!", Int{6}, Int{-2}, Int{5});
  expectInside("", largest, 0.0, largest);
  expectInside("", nan, 0.0, largest);
  expectInside(" [-0.1] is less than the min [0.0] permitted value!", -0.1, 0.0, largest);
  expectInside(" [inf] is greater than the max [1.7976931348623157e+308] permitted value!",
               infinity, 0.0, largest);
}

TEST(Validator, ChecksNumbersLengthsAndTypes) {
  expectVerdict(" \n\tParameter cannot be NAN.",
                [] { return Validator::validateDoubleNAN("M", "A", nan); });
  expectVerdict("", [] { return Validator::validateDoubleNAN("M", "A", infinity); });

  expectVerdict("", [] { return Validator::equalStringLength("M", "A", "e\u0301ur", 3); });
  expectVerdict(" is invalid\n\tParameter [EURO] length must be equal to [3].",
                [] { return Validator::equalStringLength("M", "A", "EURO", 3); });
  expectVerdict(
      "", [] { return Validator::equalStringLength("M", "A", std::nullopt, 3); }, false);

  const auto expectType = [](const std::string& message, const AnyCodable& value) {
    expectVerdict(message, [&] { return Validator::validType("M", "A", value); });
  };
  for (const AnyCodable& good : {AnyCodable(true), AnyCodable(1), AnyCodable(0.5)}) {
    expectType("", good);
  }
  expectType(" is nil!", AnyCodable());
  expectType(" \n\tParameter must be of a valid type (Bool, Int, Double, String).",
             AnyCodable::List{});
}

class Exclusion : public ::testing::Test {
 protected:
  ~Exclusion() override { Validator::setExcludedOptions(std::nullopt); }
};

TEST_F(Exclusion, MatchesAWholeEventOrOneArgument) {
  const auto isExcluded = [](const char* code, const std::optional<AnyCodable>& argument) {
    const LogCapture log(PLRLogLevel::info);
    const bool excluded = Validator::isExcluded(code, argument);
    EXPECT_EQ(log.lines().size(), excluded ? 1U : 0U);
    return excluded ? log.lines()[0] : std::string();
  };
  EXPECT_EQ(isExcluded("ce", "boss"), "") << "nothing applied yet";

  Validator::setExcludedOptions(Validator::ExcludedOptions{
      {"al", {}}, {"ce", {AnyCodable("boss")}}, {"lu", {AnyCodable(2)}}});
  for (const auto& argument : {std::optional<AnyCodable>(), std::optional<AnyCodable>("any")}) {
    EXPECT_EQ(isExcluded("al", argument), "INFO Event [al] is excluded by project configuration");
  }
  EXPECT_EQ(isExcluded("lu", 2),
            "INFO Event [lu] with [2] argument is excluded by project configuration");
  EXPECT_EQ(isExcluded("lu", 2.0), "") << "kinds differ";
  EXPECT_EQ(isExcluded("ce", "level"), "");
  EXPECT_EQ(isExcluded("ce", std::nullopt), "") << "a list needs an argument";
  EXPECT_EQ(isExcluded("di", std::nullopt), "") << "a code that is not listed";
}

}  // namespace
}  // namespace pelorino
