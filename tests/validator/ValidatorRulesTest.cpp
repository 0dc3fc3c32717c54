#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "LogCapture.h"
#include "ValidatorRules.h"

namespace pelorino {
namespace {

using Lines = std::vector<std::string>;
using Parameters = ValidatorRules::Parameters;

std::string error(const std::string& method, const std::string& rest) {
  return "ERROR In the " + method + " method an error has occurred: \n\t" + rest;
}

std::string warning(const std::string& method, const std::string& label, const std::string& text,
                    int length) {
  return "WARNING In the " + method + " method an error has occurred:\n\t" + label + ": " + text +
         " is longer than it is permitted.\n\tThe string was truncated to '" +
         std::to_string(length) + "'!";
}

std::string canceled(const std::string& method) {
  return "ERROR Execution of the " + method + " method was canceled!";
}

TEST(ValidatorRules, ApplicationKeyIsCleanedAndCutAndMustHaveContent) {
  const auto expectKey = [](const std::string& key, const std::optional<std::string>& want,
                            const Lines& lines) {
    const LogCapture log;
    EXPECT_EQ(ValidatorRules::validateInitializeKey(key), want);
    EXPECT_EQ(log.lines(), lines);
  };
  const std::string label = "The application key argument value";
  const std::string atLimit(255, 'k');
  expectKey("\n" + atLimit, atLimit, {});
  expectKey(atLimit + "k", atLimit, {warning("Initialize", label, atLimit + "k", 255)});
  std::string accents;
  for (int i = 0; i < 255; ++i) accents += "e\u0301";
  expectKey(accents, accents, {});
  expectKey("\t\u200B", std::nullopt,
            {error("Initialize", label + " is empty!"), canceled("Initialize")});
}

TEST(ValidatorRules, ABadFieldOfTheConfigurationIsRemovedWithoutCancelling) {
  EXPECT_FALSE(ValidatorRules::validateInitialize(std::nullopt).has_value());
  using Id = std::optional<std::string>;
  using Level = std::optional<std::int64_t>;
  const auto expectFields = [](const Id& id, Level level, const Id& wantId, Level wantLevel,
                               const Lines& lines) {
    const LogCapture log;
    const auto repaired = ValidatorRules::validateInitialize(
        {{PLRLogLevel::debug, id, level, PLRTrackingStatus::disable}});
    ASSERT_TRUE(repaired.has_value());
    EXPECT_EQ(repaired->userId, wantId);
    EXPECT_EQ(repaired->level, wantLevel);
    EXPECT_EQ(repaired->logLevel, PLRLogLevel::debug);
    EXPECT_EQ(repaired->trackingAvailability, PLRTrackingStatus::disable);
    EXPECT_EQ(log.lines(), lines);
  };
  const std::string longId(65, 'u');
  const std::string label = "The current level argument value ";
  expectFields({}, {}, {}, {}, {});
  expectFields("", {}, "", {}, {});
  expectFields("u\n1", 2147483646, "u1", 2147483646, {});
  expectFields(longId, {}, std::string(64, 'u'), {},
               {warning("Initialize", "The user id argument value", longId, 64)});
  expectFields(
      "\n", 2147483647, {}, {},
      {error("Initialize", "The user id argument value is empty!"),
       error("Initialize",
             label + "[2147483647] is greater than the max [2147483646] permitted value!")});
  expectFields({}, 0, {}, {},
               {error("Initialize", label + "[0] is less than the min [1] permitted value!")});
}

TEST(ValidatorRules, ABadParameterCostsOnlyItself) {
  const auto expectParameters = [](const Parameters& given, const Parameters& want,
                                   const Lines& lines) {
    const LogCapture log;
    const auto event = ValidatorRules::validateCustomEvent("boss", given);
    ASSERT_TRUE(event.has_value());
    EXPECT_EQ(event->name, "boss");
    EXPECT_EQ(event->params, want);
    EXPECT_EQ(log.lines(), lines);
  };
  const std::string longKey(33, 'k');
  const std::string longText(300, 't');
  const std::string keyLabel = "The key of the parameters dictionary";
  const auto valueLabel = [](const std::string& key) {
    return "The value of the parameters dictionary by [" + key + "] key";
  };
  using Limits = std::numeric_limits<double>;

  const Parameters kinds{{"b", true}, {"d", -0.5}, {"i", -1}, {"t", "x"}, {"u", ~std::uint64_t{0}}};
  expectParameters(kinds, kinds, {});
  expectParameters({{"k\n1", "x\u200By"}}, {{"k1", "xy"}}, {});
  // The key is cut, its label is not.
  expectParameters({{longKey, longText}}, {{std::string(32, 'k'), std::string(255, 't')}},
                   {warning("CustomEvent", keyLabel, longKey, 32),
                    warning("CustomEvent", valueLabel(longKey), longText, 255)});
  expectParameters({{"good", 1}, {"k", "\n"}}, {{"good", 1}},
                   {error("CustomEvent", valueLabel("k") + " is empty!")});
  expectParameters({{"\n", AnyCodable()}}, {},
                   {error("CustomEvent", keyLabel + " is empty!"),
                    error("CustomEvent", valueLabel("") + " is nil!")});
  expectParameters(
      {{"i", -Limits::infinity()}, {"n", Limits::quiet_NaN()}}, {},
      {error("CustomEvent",
             valueLabel("i") +
                 " [-inf] is less than the min [-1.7976931348623157e+308] permitted value!"),
       error("CustomEvent", valueLabel("n") + " \n\tParameter cannot be NAN.")});
  // Of keys that become equal the later one stays, unless it is dropped.
  expectParameters({{"a\n", 1}, {"a\u200B", 2}}, {{"a", 2}}, {});
  expectParameters({{"a\n", 1}, {"a\u200B", ""}}, {{"a", 1}},
                   {error("CustomEvent", valueLabel("a") + " is empty!")});
}

TEST(ValidatorRules, ABadNameOfACustomEventRejectsAfterTheParametersWereWalked) {
  const std::string label = "The custom event name";
  const LogCapture log;
  EXPECT_FALSE(ValidatorRules::validateCustomEvent("\n", {{"k", ""}}).has_value());
  EXPECT_EQ(ValidatorRules::validateCustomEvent("\t" + std::string(73, 'n'), {})->name,
            std::string(72, 'n'));
  EXPECT_EQ(
      log.lines(),
      (Lines{error("CustomEvent", "The value of the parameters dictionary by [k] key is empty!"),
             error("CustomEvent", label + " is empty!"), canceled("CustomEvent"),
             warning("CustomEvent", label, std::string(73, 'n'), 72)}));
}

}  // namespace
}  // namespace pelorino
