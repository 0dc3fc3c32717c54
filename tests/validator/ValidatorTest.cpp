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

TEST(Validator, SaysWhatIsWrong) {
  Lines want;
  const auto expectFailure = [&](bool passes, const std::string& message) {
    EXPECT_FALSE(passes) << message;
    want.push_back("ERROR In the M method an error has occurred: \n\tA" + message);
  };
  using Table = std::optional<std::map<std::string, int>>;
  const LogCapture log(PLRLogLevel::error);
  expectFailure(Validator::notNullOrEmpty("M", "A", std::optional<std::string>()), " is nil!");
  expectFailure(Validator::notNullOrEmpty("M", "A", Table()), " is nil!");
  expectFailure(Validator::notNullOrEmpty("M", "A", Table(std::in_place)), " is empty!");
  EXPECT_TRUE(Validator::notNullOrEmpty("M", "A", Table({{"k", 1}})));

  EXPECT_TRUE(Validator::inInterval("M", "A", largest, 0.0, largest));
  EXPECT_TRUE(Validator::inInterval("M", "A", nan, 0.0, largest));
  expectFailure(Validator::inInterval("M", "A", -0.1, 0.0, largest),
                " [-0.1] is less than the min [0.0] permitted value!");
  expectFailure(Validator::inInterval("M", "A", infinity, 0.0, largest),
                " [inf] is greater than the max [1.7976931348623157e+308] permitted value!");
  EXPECT_TRUE(Validator::validateDoubleNAN("M", "A", infinity));

  EXPECT_TRUE(Validator::equalStringLength("M", "A", "e\u0301ur", 3));
  expectFailure(Validator::equalStringLength("M", "A", "EURO", 3),
                " is invalid\n\tParameter [EURO] length must be equal to [3].");
  EXPECT_FALSE(Validator::equalStringLength("M", "A", std::nullopt, 3)) << "and in silence";

  expectFailure(Validator::validType("M", "A", AnyCodable::List{}),
                " \n\tParameter must be of a valid type (Bool, Int, Double, String).");
  EXPECT_EQ(log.lines(), want);
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
