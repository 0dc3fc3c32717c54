#include <filesystem>

#include "LibraryTest.h"

namespace pelorino {
namespace {

using namespace std::chrono_literals;

constexpr const char* numbers =
    R"({"pelorinoId":7,"crossPlatformPelorinoId":8,"pelorinoIdTimestamp":9})";
constexpr const char* stored =
    "SELECT pelorinoId, crossPlatformPelorinoId, pelorinoIdTimestamp FROM deviceIdentifiers";

TEST_F(LibraryTest, IdentifiersOfTheBackendAreStoredToldAndSent) {
  struct Listener : PLRIdentifiersListener {
    void didReceivePelorinoIdWith(std::int64_t id) override { heard.push_back(id); }
    std::vector<std::int64_t> heard;
  };
  const auto listener = std::make_shared<Listener>();
  PLRAnalytics::setIdentifiersListener(listener);
  identification.answer(200, numbers);
  start();
  EXPECT_EQ(rows(stored), "7|8|9");
  EXPECT_EQ(listener->heard, std::vector<std::int64_t>{7});
  EXPECT_EQ(*identification.requests.at(0).body, R"({"attempt":1})");
  delivered.clear();
  report("boss");
  send();
  EXPECT_EQ(header(delivered.at(0), "PelorinoId"), "7");
  EXPECT_EQ(header(delivered.at(0), "CrossPlatformPelorinoId"), "8");
  EXPECT_EQ(header(delivered.at(0), "PelorinoIdTimestamp"), "9");
  stop();
  start();
  EXPECT_EQ(identification.requests.size(), 1U) << "known identifiers are not asked for";
}

TEST_F(LibraryTest, TheBackendMayPutItsAnswerOff) {
  identification.answer(202, R"({"retryAfter":1500})");
  identification.answer(202, R"({"retryAfter":-1})");
  identification.answer(200, R"({"pelorinoId":7})");
  start();
  system.advance(1499ms);
  EXPECT_EQ(identification.requests.size(), 1U);
  PLRAnalytics::setUserId("ann");  // Another cycle is not begun meanwhile.
  system.runUntilIdle();
  EXPECT_EQ(
      timesLogged("DEBUG Receiving operation for user backend identifiers [ann] has been canceled"),
      1);
  system.advance(1ms);
  ASSERT_EQ(identification.requests.size(), 2U);
  system.advance(100ms);  // No request chases the one before it.
  ASSERT_EQ(identification.requests.size(), 3U);
  EXPECT_EQ(*identification.requests[1].body, R"({"attempt":2})");
  EXPECT_EQ(identification.requests[1].headers, identification.requests[0].headers);
  EXPECT_EQ(*identification.requests[2].body, R"({"attempt":3})");
  EXPECT_EQ(rows(stored), "7||") << "what the answer leaves out is cleared";
}

TEST_F(LibraryTest, AnAnswerForAUserWhoHasGoneIsDropped) {
  identification.answer(202, R"({"retryAfter":1500})");
  identification.answer(200, numbers);
  start(std::string("ann"));
  PLRAnalytics::setUserId("bob");
  system.runUntilIdle();
  system.advance(1500ms);
  ASSERT_EQ(identification.requests.size(), 3U);
  EXPECT_EQ(header(identification.requests[1], "UserId"), "YW5u");
  EXPECT_EQ(header(identification.requests[2], "UserId"), "Ym9i");
  EXPECT_EQ(*identification.requests[2].body, R"({"attempt":1})");
  EXPECT_EQ(rows(stored), "7|8|9");
  EXPECT_TRUE(logged(
      "DEBUG In the process of receiving backendidentifiers from the server, the user was changed. "
      "Request the identifiers again."));
}

TEST_F(LibraryTest, ARefusalEndsTheCycleAndLeavesTheIdentifiers) {
  struct Case {
    int status;
    const char* body;
    const char* line;
  };
  const Case cases[] = {
      {422, numbers, "DEBUG BackendIdentifiers: doNotRetry"},
      {500, numbers,
       "ERROR BackendIdentifiers: [Backend Module] identifiers, unknown status code 500"},
      {201, numbers,
       "ERROR BackendIdentifiers: [Backend Module] identifiers, unknown status code 201"},
  };
  std::size_t asked = 0;
  for (const Case& c : cases) {
    identification.answers = {{.status = c.status, .body = c.body, .error = {}}};
    start();
    system.advance(std::chrono::hours(1));
    EXPECT_EQ(identification.requests.size(), ++asked) << c.line;
    EXPECT_TRUE(logged(c.line)) << c.line;
    EXPECT_EQ(rows(stored), "||");
    PLRAnalytics::setTrackingAvailability(false);
    PLRAnalytics::setTrackingAvailability(true);
    system.runUntilIdle();
    EXPECT_EQ(identification.requests.size(), ++asked) << "a later caller asks again";
    stop();
  }
}

TEST_F(LibraryTest, AnAnswerThatFindsTrackingOffIsNotAppliedAndEndsTheCycle) {
  identification.answer(200, numbers);
  system.http().setLatency(2s);
  start();
  PLRAnalytics::setTrackingAvailability(false);
  system.advance(30s);
  EXPECT_EQ(rows(stored), "||");
  EXPECT_TRUE(
      logged("INFO BackendIdentifiers: The query result was not applied. Tracking is Disabled"));
  PLRAnalytics::setTrackingAvailability(true);
  system.advance(30s);
  EXPECT_EQ(rows(stored), "7|8|9");
}

TEST_F(LibraryTest, TheDeviceKeepsItsIdentifierWhenTheDataGoes) {
  identification.answer(200, numbers);
  start();
  stop();
  std::filesystem::remove_all(file.support());
  start();
  EXPECT_EQ(rows("SELECT deviceIdentifier, previousDeviceIdentifier FROM deviceIdentifiers"),
            "11111111-2222-3333-4444-555555555555|");
  stop();
  describe("99999999-2222-3333-4444-555555555555");
  delivered.clear();
  const auto asked = identification.requests.size();
  start();
  EXPECT_EQ(identification.requests.size(), asked + 1);
  report("boss");
  send();
  EXPECT_TRUE(header(delivered.back(), "PreviousDeviceId"));
}

TEST_F(LibraryTest, AChangeOfUserEndsOneSessionAndBeginsAnother) {
  start(std::string("ann"));
  system.advance(5s);
  delivered.clear();
  PLRAnalytics::setUserId("bob");
  system.runUntilIdle();
  std::vector<std::pair<std::string, std::string>> sent;
  for (const auto& request : delivered) {
    for (const auto& events : eventsOf(request)) {
      sent.emplace_back(*header(request, "UserId"), events);
    }
  }
  EXPECT_EQ(sent, (std::vector<std::pair<std::string, std::string>>{
                      {"YW5u", "ue"}, {"Ym9i", "ss"}, {"Ym9i", "di"}}));
  struct Refusal {
    const char* userId;
    const char* line;
  };
  const Refusal refusals[] = {
      {"bob", "WARNING The current userId is equal to the new userId [bob]!"},
      {"11111111-2222-3333-4444-555555555555",
       "WARNING The userId matches the deviceId [11111111-2222-3333-4444-555555555555]!\t\nSetting "
       "up a userId is not possible!"},
      {"\x01", "ERROR Execution of the SetUserId method was canceled!"},
  };
  for (const Refusal& refusal : refusals) {
    PLRAnalytics::setUserId(refusal.userId);
    system.runUntilIdle();
    EXPECT_TRUE(logged(refusal.line)) << refusal.line;
  }
  EXPECT_EQ(rows("SELECT count(*) FROM users"), "2");
}

TEST_F(LibraryTest, ALevelFromOutsideIsCheckedAndStored) {
  start();
  for (const std::int64_t level : {std::int64_t{0}, std::int64_t{2147483647}}) {
    PLRAnalytics::setCurrentLevel(level);
  }
  system.runUntilIdle();
  EXPECT_EQ(timesLogged("ERROR Execution of the SetCurrentLevel method was canceled!"), 2);
  PLRAnalytics::setCurrentLevel(2147483646);
  system.runUntilIdle();
  EXPECT_EQ(rows("SELECT level, isResourceAggregationEnable FROM users"), "2147483646|0");
}

TEST_F(LibraryTest, TrackingSwitchesOffWithItsClosingDataAndOnAgain) {
  start();
  system.advance(5s);
  report("dropped");
  delivered.clear();
  PLRAnalytics::setTrackingAvailability(false);
  report("unseen");
  EXPECT_EQ(deliveredEvents(), (std::vector<std::string>{"ue", "ts"}));
  EXPECT_TRUE(logged("DEBUG Event [ce] not created. Tracking is Disabled"));
  delivered.clear();
  PLRHost::didBecomeActive();
  system.advance(std::chrono::hours(1));
  EXPECT_TRUE(delivered.empty()) << "no timer, no session";
  PLRAnalytics::setTrackingAvailability(true);
  system.runUntilIdle();
  std::string all;
  for (const auto& events : deliveredEvents()) all += events + " ";
  EXPECT_EQ(all, "ts ss ");
}

}  // namespace
}  // namespace pelorino
