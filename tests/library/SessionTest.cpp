#include <limits>

#include "ActivityService.h"
#include "TrackingTest.h"

namespace pelorino {
namespace {

using namespace std::chrono_literals;

TEST(SessionRule, CountsTheGapSinceTheUserWasLastSeen) {
  constexpr auto smallest = std::numeric_limits<std::int64_t>::min();
  constexpr auto largest = std::numeric_limits<std::int64_t>::max();
  const auto opens = [](std::optional<std::int64_t> last, std::int64_t now) {
    return opensNewSession(last, now, 600'000);
  };
  EXPECT_TRUE(opens(std::nullopt, 0)) << "never seen";
  EXPECT_FALSE(opens(1000, 601'000)) << "exactly the time-out";
  EXPECT_TRUE(opens(1000, 601'001));
  EXPECT_FALSE(opens(1'700'000'000'000, 5)) << "a clock set back by years";
  EXPECT_TRUE(opens(smallest, largest)) << "a gap beyond the integers";
  EXPECT_FALSE(opens(largest, smallest));
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
  usualStatus.reset();
  PLRAnalytics::initialize("key");
  PLRAnalytics::customEvent("only");
  PLRHost::willTerminate();  // A program may end right after its first calls.
  EXPECT_EQ(file.run("SELECT count(*) FROM reports WHERE packagesJson LIKE '%only%'"), "1");
  PLRHost::didBecomeActive();
  for (int i = 0; i < 5; ++i) PLRAnalytics::customEvent("tick");
  PLRHost::willResignActive();
  EXPECT_EQ(file.run("SELECT count(*) FROM reports WHERE packagesJson LIKE '%tick%'"), "1");
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
