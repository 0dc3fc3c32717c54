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
  const std::string label = "The application key argument value";
  const std::string longKey(256, 'k');
  struct Case {
    const char* label;
    std::string key;
    std::optional<std::string> want;
    Lines lines;
  };
  const Case cases[] = {
      {"at the limit", std::string(255, 'k'), std::string(255, 'k'), {}},
      {"one past it", longKey, std::string(255, 'k'), {warning("Initialize", label, longKey, 255)}},
      {"measured when cleaned", "\n" + std::string(255, 'k'), std::string(255, 'k'), {}},
      {"only controls",
       "\t\u200B",
       std::nullopt,
       {error("Initialize", label + " is empty!"), canceled("Initialize")}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    const LogCapture log;
    EXPECT_EQ(ValidatorRules::validateInitializeKey(c.key), c.want);
    EXPECT_EQ(log.lines(), c.lines);
  }
}

TEST(ValidatorRules, ABadFieldOfTheConfigurationIsRemovedWithoutCancelling) {
  EXPECT_FALSE(ValidatorRules::validateInitialize(std::nullopt).has_value());
  struct Case {
    const char* label;
    PLRAnalyticsConfigurationLocal given;
    std::optional<std::string> userId;
    std::optional<std::int64_t> level;
    Lines lines;
  };
  using Level = PLRLogLevel;
  const PLRTrackingStatus off = PLRTrackingStatus::disable;
  const std::string longId(65, 'u');
  const Case cases[] = {
      {"nothing set", {Level::debug, {}, {}, off}, {}, {}, {}},
      {"the default user", {Level::debug, "", {}, off}, "", {}, {}},
      {"both cleaned and at the limit",
       {Level::debug, "u\n1", 2147483646, off},
       "u1",
       2147483646,
       {}},
      {"a long id",
       {Level::debug, longId, {}, off},
       std::string(64, 'u'),
       {},
       {warning("Initialize", "The user id argument value", longId, 64)}},
      {"both bad",
       {Level::debug, "\n", 2147483647, off},
       {},
       {},
       {error("Initialize", "The user id argument value is empty!"),
        error("Initialize",
              "The current level argument value [2147483647] is greater than the max [2147483646] "
              "permitted value!")}},
      {"level zero",
       {Level::debug, {}, 0, off},
       {},
       {},
       {error("Initialize",
              "The current level argument value [0] is less than the min [1] permitted value!")}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    const LogCapture log;
    const auto repaired = ValidatorRules::validateInitialize(c.given);
    ASSERT_TRUE(repaired.has_value());
    EXPECT_EQ(repaired->userId, c.userId);
    EXPECT_EQ(repaired->level, c.level);
    EXPECT_EQ(repaired->logLevel, Level::debug);
    EXPECT_EQ(repaired->trackingAvailability, off);
    EXPECT_EQ(log.lines(), c.lines);
  }
}

TEST(ValidatorRules, ABadParameterCostsOnlyItself) {
  const std::string longKey(33, 'k');
  const std::string longText(300, 't');
  const std::string keyLabel = "The key of the parameters dictionary";
  const auto valueLabel = [](const std::string& key) {
    return "The value of the parameters dictionary by [" + key + "] key";
  };
  constexpr double infinity = std::numeric_limits<double>::infinity();
  constexpr std::uint64_t large = std::numeric_limits<std::uint64_t>::max();
  struct Case {
    const char* label;
    Parameters given;
    Parameters want;
    Lines lines;
  };
  const Case cases[] = {
      {"each kind passes as it is",
       {{"b", true}, {"d", -0.5}, {"i", -1}, {"t", "x"}, {"u", large}},
       {{"b", true}, {"d", -0.5}, {"i", -1}, {"t", "x"}, {"u", large}},
       {}},
      {"key and value are cleaned", {{"k\n1", "x\u200By"}}, {{"k1", "xy"}}, {}},
      {"a long text is cut",
       {{"k", longText}},
       {{"k", std::string(255, 't')}},
       {warning("CustomEvent", valueLabel("k"), longText, 255)}},
      {"a long key is cut, its label is not",
       {{longKey, longText}},
       {{std::string(32, 'k'), std::string(255, 't')}},
       {warning("CustomEvent", keyLabel, longKey, 32),
        warning("CustomEvent", valueLabel(longKey), longText, 255)}},
      {"a text of controls is dropped",
       {{"good", 1}, {"k", "\n"}},
       {{"good", 1}},
       {error("CustomEvent", valueLabel("k") + " is empty!")}},
      {"key and type are both told",
       {{"\n", AnyCodable()}},
       {},
       {error("CustomEvent", keyLabel + " is empty!"),
        error("CustomEvent", valueLabel("") + " is nil!")}},
      {"numbers that are none",
       {{"i", -infinity}, {"n", std::numeric_limits<double>::quiet_NaN()}},
       {},
       {error("CustomEvent",
              valueLabel("i") +
                  " [-inf] is less than the min [-1.7976931348623157e+308] permitted value!"),
        error("CustomEvent", valueLabel("n") + " \n\tParameter cannot be NAN.")}},
      {"keys that become equal: the later one stays", {{"a\n", 1}, {"a\u200B", 2}}, {{"a", 2}}, {}},
      {"keys that become equal: a dropped one overwrites nothing",
       {{"a\n", 1}, {"a\u200B", ""}},
       {{"a", 1}},
       {error("CustomEvent", valueLabel("a") + " is empty!")}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    const LogCapture log;
    const auto event = ValidatorRules::validateCustomEvent("boss", c.given);
    ASSERT_TRUE(event.has_value());
    EXPECT_EQ(event->name, "boss");
    EXPECT_TRUE(event->params == c.want);
    EXPECT_EQ(log.lines(), c.lines);
  }
}

TEST(ValidatorRules, ABadNameOfACustomEventRejectsAfterTheParametersWereWalked) {
  const std::string label = "The custom event name";
  {
    const LogCapture log;
    EXPECT_FALSE(ValidatorRules::validateCustomEvent("\n", {{"k", ""}}).has_value());
    EXPECT_EQ(
        log.lines(),
        (Lines{error("CustomEvent", "The value of the parameters dictionary by [k] key is empty!"),
               error("CustomEvent", label + " is empty!"), canceled("CustomEvent")}));
  }
  {
    const LogCapture log;
    const std::string name = "\t" + std::string(73, 'n');
    const auto event = ValidatorRules::validateCustomEvent(name, {});
    ASSERT_TRUE(event.has_value());
    EXPECT_EQ(event->name, std::string(72, 'n'));
    EXPECT_EQ(log.lines(), (Lines{warning("CustomEvent", label, std::string(73, 'n'), 72)}));
  }
}

}  // namespace
}  // namespace pelorino
