#include <limits>
#include <tuple>

#include "TrackingTest.h"

namespace pelorino {
namespace {

class ProgressTest : public TrackingTest {
 protected:
  static void accrue(std::int64_t amount, const char* source = "quest",
                     PLRAccrualType type = PLRAccrualType::earned) {
    PLRAnalytics::currencyAccrual("gold", amount, source, type);
  }
  std::string levelSums() { return rows("SELECT type, amount FROM levelResource ORDER BY id"); }
  std::string now() const { return std::to_string(system.clock().milliseconds()); }
};

TEST_F(ProgressTest, CreditsLeaveAsOneEventATickAndSumUpForTheLevel) {
  accrue(5);
  accrue(7);
  accrue(1, "shop");
  accrue(2, "shop", PLRAccrualType::bought);
  EXPECT_EQ(levelSums(), "0|13\n1|2");
  EXPECT_EQ(fields("'ca'", {"code"}), "");
  for (const char* tick : {R"({"quest":{"gold":12},"shop":{"gold":1}}|{"shop":{"gold":2}})", "",
                           R"(|{"shop":{"gold":3}})"}) {
    system.advance(std::chrono::minutes(6));
    EXPECT_EQ(fields("'ca'", {"earned", "bought"}), tick);
    if (*tick == '\0') accrue(3, "shop", PLRAccrualType::bought);
  }
  accrue(std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(levelSums(), "0|2147483647\n1|5");
  EXPECT_TRUE(logged("ERROR LU resource: gold is overflowed"));
}

TEST_F(ProgressTest, WhatAKilledProcessLeftBehindBelongsToItsUserSessionAndMoment) {
  accrue(5);
  const std::string began = now();
  system.advance(std::chrono::seconds(30));
  accrue(6, "shop");
  const std::string last = now();
  kill();
  rows(
      "INSERT INTO users (projectId, level, userId, isDefaultUser, sessionId, "
      "isResourceAggregationEnable) SELECT projectId, 9, 'bob', 0, 70, 1 FROM users UNION ALL "
      "SELECT projectId, 4, 'carl', 0, NULL, 1 FROM users; INSERT INTO currencyAccrualResources "
      "(userId, type, name, amount, source, timestamp) SELECT id, 1, 'gem', 3, 'shop', 80 "
      "FROM users WHERE userId <> 'ann'; DELETE FROM seen");
  system.advance(std::chrono::hours(1));
  start("ann");
  EXPECT_EQ(fields("'ca','ss'", {"code", "timestamp", "sessionId", "level", "earned", "bought"}),
            R"(ca|80|70|9||{"shop":{"gem":3}})"
            "\nca|" +
                last + "|" + began + R"(|1|{"quest":{"gold":5},"shop":{"gold":6}}|)" + "\nss|" +
                now() + "||1||");
  EXPECT_EQ(rows("SELECT u.userId FROM currencyAccrualResources c JOIN users u ON u.id = c.userId"),
            "carl")
      << "there is no session that it belongs to";
}

TEST_F(ProgressTest, ALevelReportsItsSumsWhenItWasPlayedFromItsBeginning) {
  const auto up = [](std::int64_t level) { return [=] { PLRAnalytics::levelUp(level); }; };
  const auto set = [](std::int64_t level) { return [=] { PLRAnalytics::setCurrentLevel(level); }; };
  const auto pay = [] { PLRAnalytics::virtualCurrencyPayment("id", "type", 2, {{"gold", 3}}); };
  struct Case {
    std::function<void()> play;  ///< After a credit of 5.
    std::string events;          ///< Level, accrual; level, spent and earned within it.
    std::string left;
  };
  const Case cases[] = {
      {set(0), "", "0|5"},
      {pay, "", "0|10\n2|3"},
      {up(2), "1|15||\n2||3|15", ""},
      {up(2), "2|5||\n2|||", ""},
      {up(4), "2|5||\n4|||", ""},
      {set(4), "", "0|5"},
      {set(7), "4|10||", ""},
      {pay, "", ""},
      {up(8), "7|10||\n8|||", ""},
      {up(9), "8|5||\n9|||5", ""},
  };
  for (const Case& c : cases) {
    accrue(5);
    c.play();
    EXPECT_EQ(fields("'ca','lu'", {"level", "earned.quest.gold", "spent.gold", "earned.gold"}),
              c.events);
    EXPECT_EQ(levelSums(), c.left) << c.events;
  }
  EXPECT_EQ(timesLogged("ERROR Execution of the SetCurrentLevel method was canceled!"), 1);
}

TEST_F(ProgressTest, ReferrersBalancesStepsAndOrdersAreNotReportedTwice) {
  const auto reported = [this] {
    PLRAnalytics::referrer({{PLRReferralProperty::source(), "friend"}});  // Once for each key.
    PLRAnalytics::currentBalance({{"gold", 0}});  // Once for each user and run.
    PLRAnalytics::tutorial(-1);                   // Once for each user.
    PLRAnalytics::realCurrencyPayment("order", 4.99, "product", "EUR");  // Once for each key.
    return fields("'rf','cb','tr','rp'", {"code"});
  };
  EXPECT_EQ(reported(), "rf\ncb\ntr\nrp");
  EXPECT_EQ(deliveredEvents().back(), "cb tr rp") << "neither a referrer nor an order waits";
  EXPECT_EQ(reported(), "");
  EXPECT_TRUE(logged("INFO The referrer has been sent"));
  EXPECT_TRUE(logged("WARNING The CurrentBalance event is already sent, in this game session"));
  EXPECT_TRUE(logged("WARNING Tutorial step [-1] is already used"));
  EXPECT_TRUE(logged("WARNING Real payment with orderId [order]  is already used!"));
  PLRAnalytics::setUserId("bob");
  EXPECT_EQ(reported(), "cb\ntr");
  PLRAnalytics::setUserId("ann");
  EXPECT_EQ(reported(), "cb") << "a change of user forgets that it was sent";
  restart("ann");
  EXPECT_EQ(reported(), "cb");
  stop();
  PLRAnalytics::initialize("another key");
  EXPECT_EQ(reported(), "rf\ncb\ntr\nrp");
}

TEST_F(ProgressTest, AProgressionTakesAsLongAsItsCallerOrTheClockSays) {
  using Case = std::tuple<int, int, std::string>;  // Milliseconds; seconds said and told.
  for (const auto& [played, said, told] : {Case{0, 0, ""}, Case{1, 0, "1"}, Case{2000, 0, "2"},
                                           Case{2001, 0, "3"}, Case{2001, 12, "12"}}) {
    PLRAnalytics::startProgressionEvent("cave");
    system.runUntilIdle();
    system.advance(std::chrono::milliseconds(played));
    PLRFinishProgressionEventParameters parameters;
    parameters.duration = said;
    PLRAnalytics::finishProgressionEvent("cave", parameters);
    EXPECT_EQ(fields("'pe'", {"parameters.duration"}), told);
  }
}

TEST_F(ProgressTest, EventsTellTheProgressionThatIsUnderWay) {
  PLRStartProgressionEventParameters cave;
  cave.source = "map";
  cave.difficulty = 3;
  PLRAnalytics::startProgressionEvent("wood");
  PLRAnalytics::startProgressionEvent("cave", cave);
  PLRAnalytics::finishProgressionEvent("wood");
  PLRAnalytics::currentBalance({{"gold", 1}});
  PLRAnalytics::levelUp(2, {{"gold", 7}});
  PLRAnalytics::virtualCurrencyPayment("id", "type", 1, 4, "gold");
  PLRAnalytics::finishProgressionEvent("cave");
  PLRAnalytics::tutorial(2);
  EXPECT_EQ(
      fields("'cb','lu','vp','pe','tr'", {"inProgress", "balance", "purchasePrice", "parameters"}),
      R"(|{"gold":1}||
["cave"]|{"gold":7}||
["cave"]||{"gold":4}|
|||{"success":true,"difficulty":3,"source":"map"}
|||)");
}

TEST_F(ProgressTest, WithoutTrackingReportsAreOnlyRemembered) {
  PLRAnalytics::setTrackingAvailability(false);
  PLRAnalytics::levelUp(2);
  PLRAnalytics::currentBalance({{"gold", 1}});
  PLRAnalytics::tutorial(1);
  PLRAnalytics::realCurrencyPayment("order", 1, "product", "EUR");
  PLRAnalytics::referrer({{PLRReferralProperty::source(), "friend"}});
  PLRAnalytics::startProgressionEvent("cave");
  PLRAnalytics::finishProgressionEvent("cave");
  PLRAnalytics::setTrackingAvailability(true);
  PLRAnalytics::referrer({{PLRReferralProperty::source(), "friend"}});
  PLRAnalytics::finishProgressionEvent("cave");
  PLRAnalytics::currentBalance({{"gold", 1}});
  EXPECT_EQ(fields("'lu','tr','rp','pe','cb','rf'", {"code"}), "rf") << "is not used up";
  EXPECT_TRUE(
      logged("WARNING Progression event can't be finished!\n\tDoesn't have any started progression "
             "events"));
  EXPECT_EQ(rows("SELECT level, (SELECT count(*) FROM tutorialMarkEntry), "
                 "(SELECT count(*) FROM realPaymentMarks) FROM users"),
            "2|1|1");
}

}  // namespace
}  // namespace pelorino
