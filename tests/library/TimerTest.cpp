#include <limits>

#include "LibraryTest.h"
#include "TimerService.h"

namespace pelorino {
namespace {

using namespace std::chrono_literals;

TEST(TimerPeriod, IsWholeSecondsAndNeverNothing) {
  using Integers = std::numeric_limits<std::int64_t>;
  const std::pair<std::int64_t, std::chrono::seconds> cases[] = {
      {300'000, 300s},
      {1999, 1s},
      {999, 1s},
      {-5000, 1s},
      {Integers::min(), 1s},
      {Integers::max(), std::chrono::days(3650)},
  };
  for (const auto& [milliseconds, period] : cases) EXPECT_EQ(timerPeriod(milliseconds), period);
}

std::string configWith(const std::string& more) {
  return R"({"timeForRequest":5000,"countForRequest":10,"eventParamsCount":2,"sessionTimeout":1000,)"
         R"("serverTime":1,"aliveTimeout":3000,"userCounting":true)" +
         more + "}";
}

TEST_F(LibraryTest, TimersSendStoredEventsSignsOfLifeAndTheTimeOfTheLastSight) {
  start();
  delivered.clear();
  report("boss");
  EXPECT_EQ(system.pendingTimers(), 4U + 1) << "the four, and the retry of the configuration";
  system.advance(119s);
  EXPECT_TRUE(delivered.empty());
  const auto seen = std::stoll(rows("SELECT lastBackgroundTime FROM users"));
  EXPECT_EQ(seen, DeterministicSystem::startTime + 105'000) << "every 15 seconds";
  system.advance(1s);
  EXPECT_EQ(deliveredEvents(), std::vector<std::string>{"boss"});
  delivered.clear();
  system.advance(180s);
  EXPECT_EQ(deliveredEvents(), std::vector<std::string>{"al"});
  EXPECT_EQ(rows("SELECT count(*) FROM events"), "0") << "a sign of life is never stored";
  system.advance(60s);
  EXPECT_EQ(timesLogged("DEBUG Currency accrual timer tick"), 1);
}

TEST_F(LibraryTest, ASentReportPutsTheNextPeriodicSendAWholePeriodAway) {
  start();
  system.advance(100s);
  report("first");
  send();
  report("second");
  delivered.clear();
  system.advance(119s);
  EXPECT_EQ(timesDelivered("second"), 0);
  system.advance(1s);
  EXPECT_EQ(timesDelivered("second"), 1);
}

TEST_F(LibraryTest, TimersRunInTheForegroundOnly) {
  start();
  const auto running = system.pendingTimers();
  PLRHost::didEnterBackground();
  system.runUntilIdle();
  EXPECT_EQ(system.pendingTimers(), running - 4);
  for (int i = 0; i < 1000; ++i) {
    PLRHost::didBecomeActive();
    PLRHost::willResignActive();
  }
  system.runUntilIdle();
  EXPECT_EQ(system.pendingTimers(), running - 4) << "none is left behind";
  PLRHost::didBecomeActive();
  system.runUntilIdle();
  EXPECT_EQ(system.pendingTimers(), running);
  stop();
  EXPECT_EQ(system.pendingTimers(), 0U);
}

TEST_F(LibraryTest, AConfigurationChangesThePeriodsOfARunningLibraryAtOnce) {
  configuration.answer(503, "");
  configuration.answer(200, configWith(R"(,"currencyAggregationTimeout":7000)"));
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

TEST_F(LibraryTest, AConfigurationThatArrivesLateStartsTimersUnlessTrackingIsOff) {
  configuration.answer(200, configWith(""));
  system.http().setLatency(2s);
  start();
  PLRHost::didEnterBackground();
  system.advance(30s);
  EXPECT_EQ(system.pendingTimers(), 4U) << "in the background too";
  stop();
  EXPECT_EQ(system.pendingTimers(), 0U);

  PLRHost::setApplicationState(PLRApplicationState::active);
  start();
  PLRAnalytics::setTrackingAvailability(false);
  system.advance(30s);
  EXPECT_EQ(configuration.requests.size(), 2U);
  EXPECT_EQ(system.pendingTimers(), 0U);
  delivered.clear();
  system.advance(1h);
  EXPECT_EQ(deliveredEvents(), std::vector<std::string>());
}

}  // namespace
}  // namespace pelorino
