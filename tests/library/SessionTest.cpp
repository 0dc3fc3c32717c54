#include <limits>

#include "ActivityService.h"
#include "LibraryTest.h"

namespace pelorino {
namespace {

TEST(SessionRule, CountsTheGapSinceTheUserWasLastSeen) {
  constexpr auto smallest = std::numeric_limits<std::int64_t>::min();
  constexpr auto largest = std::numeric_limits<std::int64_t>::max();
  struct Case {
    const char* label;
    std::optional<std::int64_t> last;
    std::int64_t now;
    bool opens;
  };
  const Case cases[] = {
      {"never seen", std::nullopt, 0, true},
      {"exactly the time-out", 1000, 601'000, false},
      {"one millisecond more", 1000, 601'001, true},
      {"a clock set back by years", 1'700'000'000'000, 5, false},
      {"before 1970", -600'001, 0, true},
      {"a gap beyond the integers", smallest, largest, true},
      {"the same backward", largest, smallest, false},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(opensNewSession(c.last, c.now, 600'000), c.opens) << c.label;
  }
}

TEST_F(LibraryTest, ASessionOutlivesShortAbsencesAndRestarts) {
  start();
  const std::string session = rows("SELECT sessionId FROM users");
  system.advance(std::chrono::seconds(30));
  PLRHost::willResignActive();
  PLRHost::didEnterBackground();
  system.advance(std::chrono::minutes(10));
  PLRHost::didBecomeActive();
  system.runUntilIdle();
  EXPECT_EQ(rows("SELECT sessionId FROM users"), session);

  stop();
  system.advance(std::chrono::minutes(10));
  start();
  EXPECT_EQ(rows("SELECT sessionId FROM users"), session);

  stop();
  system.advance(std::chrono::minutes(10) + std::chrono::milliseconds(1));
  start();
  EXPECT_EQ(rows("SELECT sessionId FROM users"), std::to_string(system.clock().milliseconds()));
  const auto events = deliveredEvents();
  EXPECT_EQ(std::ranges::count(events, std::string("ss")), 2);
}

TEST_F(LibraryTest, AStayInTheForegroundIsMeasuredInWholeSeconds) {
  struct Case {
    std::chrono::milliseconds stay;
    std::optional<std::int64_t> length;
  };
  for (const Case& c : {Case{std::chrono::milliseconds(2999), 2}, Case{std::chrono::seconds(1), 1},
                        Case{std::chrono::milliseconds(999), std::nullopt}}) {
    stop();
    start();
    delivered.clear();
    system.advance(c.stay);
    PLRHost::willResignActive();
    system.runUntilIdle();
    std::optional<std::int64_t> length;
    for (const auto& request : delivered) {
      const auto event =
          boost::json::parse(*request.body).at("reports").at(0).at("packages").at(0).at("events");
      for (const auto& item : event.as_array()) {
        if (item.at("code") == "ue") length = item.at("length").as_int64();
      }
    }
    EXPECT_EQ(length, c.length);
  }
  EXPECT_TRUE(logged("DEBUG The user engagement event was not generated, session length is zero"));
}

TEST_F(LibraryTest, LeavingTheForegroundReturnsWhenEverythingIsStored) {
  start();
  usualStatus.reset();
  for (int i = 0; i < 5; ++i) PLRAnalytics::customEvent("tick");
  PLRHost::willResignActive();
  EXPECT_EQ(rows("SELECT count(*) FROM reports"), "1");
  PLRAnalytics::getUserId([](const std::string&) { PLRHost::didEnterBackground(); });
  system.runUntilIdle();  // From the queue itself it must not wait for itself.
}

TEST_F(LibraryTest, AnIntegrityProbeMayLeaveTheForeground) {
  PLRHostDescription host;
  host.applicationName = "game";
  host.supportDirectory = file.support();
  host.integrityProbe = [] {
    PLRHost::willResignActive();  // The start, on its queue, waits for this probe.
    return true;
  };
  PLRHost::describe(host);
  start();
  EXPECT_FALSE(logged("ERROR Cannot obtain device information!"));
  EXPECT_EQ(deliveredEvents(), (std::vector<std::string>{"ss", "di"}));
  EXPECT_TRUE(logged("DEBUG Stop activity"));
}

}  // namespace
}  // namespace pelorino
