#include <limits>

#include "ActivityService.h"
#include "TrackingTest.h"

namespace pelorino {
namespace {

using namespace std::chrono_literals;

TEST(SessionRule, CountsTheGapSinceTheUserWasLastSeen) {
  constexpr auto smallest = std::numeric_limits<std::int64_t>::min();
  constexpr auto largest = std::numeric_limits<std::int64_t>::max();
  const struct {
    const char* label;
    std::optional<std::int64_t> last;
    std::int64_t now;
    bool opens;
  } cases[] = {
      {"never seen", std::nullopt, 0, true},
      {"exactly the time-out", 1000, 601'000, false},
      {"one millisecond more", 1000, 601'001, true},
      {"a clock set back by years", 1'700'000'000'000, 5, false},
      {"before 1970", -600'001, 0, true},
      {"a gap beyond the integers", smallest, largest, true},
      {"the same backward", largest, smallest, false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(opensNewSession(c.last, c.now, 600'000), c.opens) << c.label;
  }
}

TEST_F(LibraryTest, ASessionOutlivesShortAbsencesAndRestarts) {
  start();
  const std::string session = rows("SELECT sessionId FROM users");
  system.advance(30s);
  PLRHost::willResignActive();
  PLRHost::didEnterBackground();
  system.advance(10min);
  PLRHost::didBecomeActive();
  EXPECT_EQ(rows("SELECT sessionId FROM users"), session);

  stop();
  system.advance(10min);
  start();
  EXPECT_EQ(rows("SELECT sessionId FROM users"), session);

  stop();
  system.advance(10min + 1ms);
  start();
  EXPECT_EQ(rows("SELECT sessionId FROM users"), std::to_string(system.clock().milliseconds()));
  EXPECT_EQ(timesDelivered("ss"), 2);
}

TEST_F(TrackingTest, AStayInTheForegroundIsMeasuredInWholeSeconds) {
  for (const auto& [stay, length] : {std::pair(2999ms, "2"), {1000ms, "1"}, {999ms, ""}}) {
    PLRHost::didBecomeActive();
    system.runUntilIdle();
    system.advance(stay);
    PLRHost::willResignActive();
    EXPECT_EQ(fields("'ue'", {"length"}), length);
  }
  EXPECT_TRUE(logged("DEBUG The user engagement event was not generated, session length is zero"));
}

TEST_F(LibraryTest, LeavingTheForegroundReturnsWhenEverythingIsStored) {
  start();
  usualStatus.reset();
  for (int i = 0; i < 5; ++i) PLRAnalytics::customEvent("tick");
  PLRHost::willResignActive();
  EXPECT_EQ(file.run("SELECT count(*) FROM reports"), "1");
  PLRAnalytics::getUserId([](const std::string&) { PLRHost::didEnterBackground(); });
  system.runUntilIdle();  // From the queue itself it must not wait for itself.
}

TEST_F(LibraryTest, AnIntegrityProbeMayLeaveTheForeground) {
  describe(device, [] {
    PLRHost::willResignActive();  // The start, on its queue, waits for this probe.
    return true;
  });
  start();
  EXPECT_FALSE(logged("ERROR Cannot obtain device information!"));
  EXPECT_EQ(deliveredEvents(), (std::vector<std::string>{"ss", "di"}));
  EXPECT_TRUE(logged("DEBUG Stop activity"));
}

}  // namespace
}  // namespace pelorino
