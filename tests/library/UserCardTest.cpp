#include <pelorino/PLRUserCard.h>

#include <cmath>
#include <functional>
#include <iterator>
#include <limits>

#include "TrackingTest.h"
#include "Validator.h"

namespace pelorino {
namespace {

using Card = PLRUserCard;
using Action = std::function<void()>;
constexpr auto maximalInteger = std::numeric_limits<std::int64_t>::max();
constexpr auto minimalInteger = std::numeric_limits<std::int64_t>::min();
constexpr double maximalDouble = std::numeric_limits<double>::max();

class UserCardTest : public TrackingTest {
 protected:
  ~UserCardTest() override { Validator::setExcludedOptions(std::nullopt); }

  /// What has been stored for the backend of the card since the last look.
  std::string told() { return stored("'pl'", "'$.code', '$.timestamp', '$.sessionId', '$.level'"); }
  std::string card(const std::string& column = "json") {
    return rows("SELECT " + column + " FROM peopleCards ORDER BY id");
  }
  void sent() {
    send();
    told();
  }
  /// The lines that `action` leads to, but for those for developers.
  std::string logOf(const Action& action) {
    std::string found;
    for (const std::string& line : linesOf(action)) {
      if (!line.starts_with("DEBUG")) found += (found.empty() ? "" : "\n") + line;
    }
    return found;
  }
  std::optional<Card::Value> valueOf(const std::string& key) {
    return answerOf<std::optional<Card::Value>>(
        [&](auto handler) { Card::getValue(key, handler); });
  }
};

TEST_F(UserCardTest, TheBackendIsToldWhatHasChanged) {
  EXPECT_EQ(told(), "") << "an empty card is nothing to tell";
  struct Step {
    const char* label;
    Action action;
    std::string told;
  };
  const Step steps[] = {
      {"values of every type",
       [] {
         Card::set("text", "x"), Card::set("flag", true), Card::set("count", std::uint8_t{7});
         Card::set("ratio", 0.5F), Card::setGender(PLRGender::Male);
       },
       R"({"parameters":{"count":7,"flag":true,"gender":1,"ratio":0.5,"text":"x"}})"},
      {"the value that is there", [] { Card::set("count", 7); }, ""},
      {"another type is a change", [] { Card::set("count", 7.0); },
       R"({"parameters":{"count":7}})"},
      {"unset keys, also unknown ones, are null once",
       [] {
         Card::unset({"count", "", "never"}), Card::unset("ratio");
       },
       R"({"parameters":{"count":null,"never":null,"ratio":null}})"},
      {"a failed increment is nothing to tell", [] { Card::increment("text", 1); }, ""},
      {"a clear", [] { Card::set("n", 1), Card::setCheater(true), Card::clearUser(); },
       R"({"parameters":{"cheater":true,"n":1}})"
       "\n"
       R"({"parameters":null})"},
  };
  for (const Step& step : steps) {
    SCOPED_TRACE(step.label);
    step.action();
    if (&step != std::prev(std::end(steps))) send();  // The last goes without being asked to.
    EXPECT_EQ(told(), step.told);
  }
  EXPECT_EQ(card(), R"({"cheater":true})") << "the mark survives";
}

TEST_F(UserCardTest, TheLogTellsTheCardsOwnValues) {
  Card::set("two", 2.0);
  std::string event;
  for (const std::string& line : linesOf([this] { send(); })) {
    if (line.find("code: pl") != std::string::npos) event = line;
  }
  EXPECT_NE(event.find("\t\t parameter key: two value: 2.0\n"), std::string::npos) << event;
}

TEST_F(UserCardTest, ACardOutlivesTheProcessAndIsToldWholeAtTheNextStart) {
  Card::set("kept", 1);
  Card::set("gone", 2);
  sent();
  Card::set("kept", 3);
  Card::unset("gone");
  kill();
  EXPECT_EQ(card("json, updated, cleared, changedKeys"), R"({"gone":null,"kept":3}|1|0|kept,gone)");
  start();
  EXPECT_EQ(told(), R"({"parameters":{"gone":null,"kept":3}})");
  EXPECT_EQ(card("json, updated, cleared, changedKeys"), R"({"kept":3}|0|0|)");

  Card::set("kept", 4);
  kill();
  rows("UPDATE peopleCards SET cleared = 1");
  start();
  EXPECT_EQ(told(), R"({"parameters":null})");
  send();
  EXPECT_EQ(told(), "") << "the clear is told once";
}

TEST_F(UserCardTest, IncrementsAddWithinTheLimitsOfNumbers) {
  const std::string overflow = "ERROR [User Card] The incremented value [k] caused overflow\n";
  const auto added = [](const std::string& sum) {
    return "INFO [User Card] New value [" + sum + "] for the key [k] was successfully incremented";
  };
  const auto refused = [](const std::string& saved, const std::string& by) {
    return "ERROR [User Card] In the increment method an error has occurred: \n\tValue [" + saved +
           "] type does not match the increment value [" + by + "]";
  };
  using Value = std::optional<Card::Value>;
  struct Case {
    Value saved;
    std::variant<std::int64_t, double> by;
    Value want;
    std::string log;
  };
  const std::int64_t one = 1;
  const Case cases[] = {
      {std::nullopt, one, one, "INFO [User Card] Value [1] for the key [k] was set successfully"},
      {one, one, std::int64_t{2}, added("2")},
      {one, 0.5, 1.5, added("1.5")},
      {maximalInteger, one, maximalInteger, overflow + added("9223372036854775807")},
      {minimalInteger, -one, minimalInteger, overflow + added("-9223372036854775808")},
      {maximalDouble, one, maximalDouble, overflow + added("1.7976931348623157e+308")},
      {"text", one, "text", refused("text", "1")},
  };
  for (const Case& c : cases) {
    Card::unset("k");
    sent();
    if (c.saved) std::visit([](const auto& value) { Card::set("k", value); }, *c.saved);
    EXPECT_EQ(logOf([&] { std::visit([](auto by) { Card::increment("k", by); }, c.by); }), c.log);
    EXPECT_EQ(valueOf("k"), c.want) << c.log;
  }
  Card::unset("k");
  EXPECT_EQ(logOf([] { Card::increment("k", 1); }), refused("nil", "1")) << "not told yet";
}

TEST_F(UserCardTest, KeysAndValuesAreRepairedOrRefused) {
  const std::string occurred = " In the set(key:value:) method an error has occurred:";
  const std::string error = "ERROR" + occurred + " \n\tThe ";
  const std::string cancelled = "\nERROR Execution of the set(key:value:) method was canceled!";
  const auto truncated = [&](const std::string& what, const std::string& text, const char* limit) {
    return "WARNING" + occurred + "\n\tThe " + what + " argument: " + text +
           " is longer than it is permitted.\n\tThe string was truncated to '" + limit + "'!\n";
  };
  const auto wrong = [](const std::string& value, const std::string& key, const std::string& type) {
    return "ERROR Invalid value! The [" + value + "] value of the reserved key [" + key +
           "] must be " + type;
  };
  const auto done = [](const std::string& key, const std::string& value) {
    return "INFO [User Card] Value [" + value + "] for the key [" + key + "] was set successfully";
  };
  const std::string key64(64, 'k');
  const std::string text255(255, 't');
  struct Case {
    Action action;
    std::string log;
  };
  const Case cases[] = {
      {[] { Card::set("AGE", "old"); }, wrong("old", "age", "Int")},
      {[] { Card::set("a\x01ge", 31); }, done("age", "31")},
      {[] { Card::set("a\x01ge", "old"); }, wrong("old", "age", "Int")},
      {[] { Card::set("A\x01ge", "old"); }, done("Age", "old")},
      {[] { Card::unset("A\x01ge"); },
       "INFO [User Card] Properties for key [Age] were successfully unset"},
      {[] { Card::set("gender", 1); }, wrong("1", "gender", "PLRGender")},
      {[] { Card::set("cheater", 1.0); }, wrong("1.0", "cheater", "Bool")},
      {[] { Card::increment("eMail", 1); }, wrong("1", "email", "String")},
      {[&] { Card::set(key64 + "k", text255 + "t"); },
       truncated("key", key64 + "k", "64") + truncated("value", text255 + "t", "255") +
           done(key64, text255)},
      {[] { Card::set("", 1); }, error + "key argument is empty!" + cancelled},
      {[] { Card::set("empty", "\x01\u200D"); }, error + "value argument is empty!" + cancelled},
      {[] { Card::set("nan", std::nan("")); },
       error + "value argument \n\tParameter cannot be NAN." + cancelled},
      {[] {
         Card::unset({"", "Score", "score"});
       },
       "ERROR In the unset(properties:) method an error has occurred: \n\tThe [] key of the keys "
       "array is empty!\n"
       "INFO [User Card] Properties for key [Score,score] were successfully unset"},
      {[] { Card::unset(""); },
       "ERROR In the unset(property:) method an error has occurred: \n\tThe [] key of the keys "
       "array is empty!"},
  };
  for (const Case& c : cases) EXPECT_EQ(logOf(c.action), c.log);
}

TEST_F(UserCardTest, GettersAnswerWithTheValueOrTheirFallback) {
  const auto all = [this] {
    return std::tuple(answerOf<std::string>(Card::getName), answerOf<std::string>(Card::getPhoto),
                      answerOf<PLRGender>(Card::getGender), answerOf<std::int64_t>(Card::getAge),
                      answerOf<bool>(Card::getCheater), valueOf("EMAIL"));
  };
  const auto none = std::tuple(std::string(), std::string(), PLRGender::Unknown, std::int64_t{0},
                               false, std::optional<Card::Value>());
  EXPECT_EQ(all(), none);
  Card::setName("Ann"), Card::setPhoto("p"), Card::setEmail("a@b");
  Card::setGender(PLRGender::Female), Card::setAge(30), Card::setCheater(true);
  EXPECT_EQ(all(), std::tuple(std::string("Ann"), std::string("p"), PLRGender::Female,
                              std::int64_t{30}, true, std::optional<Card::Value>("a@b")));
  Card::unset({"name", "photo", "gender", "age", "cheater", "email"});
  EXPECT_EQ(all(), none);
  EXPECT_EQ(valueOf(""), std::nullopt);
  stop();
  rows(R"(UPDATE peopleCards SET json = '{"gender":4294967297,"name":5,"age":"x","cheater":1}')");
  EXPECT_EQ(all(), none) << "not started";
  EXPECT_TRUE(
      logged("ERROR In the getName(completionHandler:) method an error has occurred: "
             "The SDK is not initialized yet!"));
  start();
  EXPECT_EQ(all(), none) << "values of wrong types";
}

TEST_F(UserCardTest, WhatCannotBeToldStaysInTheCard) {
  Card::set("k", 1);
  PLRAnalytics::setTrackingAvailability(false);
  told();
  Card::set("k", 2);
  send();
  EXPECT_EQ(told(), "");
  EXPECT_EQ(card("json, updated, changedKeys"), R"({"k":2}|1|k)");
  PLRAnalytics::setTrackingAvailability(true);
  send();
  EXPECT_EQ(told(), R"({"parameters":{"k":2}})");
}

TEST_F(UserCardTest, ExclusionsStopChangesOfTheKeysThatTheyName) {
  Card::set("vip", 1);
  system.runUntilIdle();
  Validator::setExcludedOptions(Validator::ExcludedOptions{{"pl", {AnyCodable("vip"), "name"}}});
  EXPECT_EQ(logOf([] { Card::set("vip", 2); }),
            "INFO Event [pl] with [vip] argument is excluded by project configuration");
  Card::increment("vip", 1), Card::setName("x"), Card::unset("vip");
  Card::unset({"vip", "free"});
  EXPECT_EQ(card(), R"({"free":null,"vip":1})");
  EXPECT_EQ(valueOf("vip"), Card::Value(std::int64_t{1}));
}

}  // namespace
}  // namespace pelorino
