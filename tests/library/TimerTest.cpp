#include <limits>

#include "LibraryTest.h"
#include "TimerService.h"

namespace pelorino {
namespace {

using namespace std::chrono_literals;

TEST(TimerPeriod, IsWholeSecondsAndNeverNothing) {
  EXPECT_EQ(timerPeriod(1999), 1s);
  EXPECT_EQ(timerPeriod(999), 1s);
  EXPECT_EQ(timerPeriod(-5000), 1s);
  EXPECT_EQ(timerPeriod(std::numeric_limits<std::int64_t>::max()), std::chrono::days(3650));
}

TEST_F(LibraryTest, TimersSendStoredEventsSignsOfLifeAndTheTimeOfTheLastSight) {
  start();
  EXPECT_EQ(system.pendingTimers(), 4U + 1) << "the four, and the retry of the configuration";
  system.advance(100s);
  report("first");
  send();
  report("second");
  delivered.clear();
  system.advance(119s);
  EXPECT_TRUE(delivered.empty()) << "a report puts the next periodic send a whole period away";
  const auto seen = std::stoll(rows("SELECT lastBackgroundTime FROM users"));
  EXPECT_EQ(seen, DeterministicSystem::startTime + 210'000) << "every 15 seconds";
  system.advance(1s);
  EXPECT_EQ(deliveredEvents(), std::vector<std::string>{"second"});
  delivered.clear();
  system.advance(80s);
  EXPECT_EQ(deliveredEvents(), std::vector<std::string>{"al"});
  EXPECT_EQ(rows("SELECT count(*) FROM events"), "0") << "a sign of life is never stored";
  system.advance(60s);
  EXPECT_EQ(timesLogged("DEBUG Currency accrual timer tick"), 1);
  PLRHost::didEnterBackground();
  system.runUntilIdle();
  EXPECT_EQ(system.pendingTimers(), 1U) << "in the foreground only";
}

TEST_F(LibraryTest, AConfigurationChangesThePeriodsOfARunningLibraryAtOnce) {
  configuration.answer(503, "");
  configuration.answer(
      200,
      R"({"timeForRequest":5000,"countForRequest":10,"eventParamsCount":2,"sessionTimeout":1000,)"
      R"("serverTime":1,"aliveTimeout":3000,"currencyAggregationTimeout":7000,"userCounting":true})");
  start();
  system.advance(60s);
  delivered.clear();
  system.advance(3s);
  EXPECT_EQ(deliveredEvents(), std::vector<std::string>{"al"});
  delivered.clear();
  report("boss");
  system.advance(2s);
  EXPECT_EQ(timesDelivered("boss"), 1);
  system.advance(2s);
  EXPECT_EQ(timesLogged("DEBUG Currency accrual timer tick"), 1);
  PLRCustomEventParameters parameters;
  for (int i = 0; i < 3; ++i) parameters.add(std::to_string(i), i);
  EXPECT_EQ(parameters.getAllParameters().size(), 2U) << "the limit of the new configuration";

  PLRHost::willResignActive();
  system.advance(1001ms);
  delivered.clear();
  PLRHost::didBecomeActive();
  EXPECT_EQ(deliveredEvents(), std::vector<std::string>{"ss"}) << "and its session time-out";
}

}  // namespace
}  // namespace pelorino
