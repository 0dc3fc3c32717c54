#include <filesystem>

#include "LibraryTest.h"

namespace pelorino {
namespace {

using namespace std::chrono_literals;

constexpr const char* numbers =
    R"({"pelorinoId":7,"crossPlatformPelorinoId":8,"pelorinoIdTimestamp":9})";
constexpr const char* stored =
    "SELECT pelorinoId, crossPlatformPelorinoId, pelorinoIdTimestamp FROM deviceIdentifiers";

struct Listener : PLRIdentifiersListener {
  void didReceivePelorinoIdWith(std::int64_t id) override { heard.push_back(id); }
  std::vector<std::int64_t> heard;
};

TEST_F(LibraryTest, IdentifiersOfTheBackendAreStoredSentAndToldAlsoToALateListener) {
  const auto listener = std::make_shared<Listener>(), late = std::make_shared<Listener>();
  PLRAnalytics::setIdentifiersListener(listener);
  identification.answer(200, numbers);
  start();
  EXPECT_EQ(rows(stored), "7|8|9");
  EXPECT_EQ(listener->heard, std::vector<std::int64_t>{7});
  report("boss");
  send();
  EXPECT_EQ(header(delivered.back(), "PelorinoId"), "7");
  EXPECT_EQ(header(delivered.back(), "CrossPlatformPelorinoId"), "8");
  EXPECT_EQ(header(delivered.back(), "PelorinoIdTimestamp"), "9");

  identification.answers.clear();
  for (const std::string id : {"NULL", "0", "7"}) {
    stop();
    rows("UPDATE deviceIdentifiers SET pelorinoId=" + id);
    start();
    PLRAnalytics::setIdentifiersListener(late);
    system.runUntilIdle();
  }
  PLRAnalytics::setIdentifiersListener(nullptr);
  system.runUntilIdle();
  EXPECT_EQ(late->heard, std::vector<std::int64_t>{7}) << "only an identifier that is set";
}

TEST_F(LibraryTest, TheBackendMayPutItsAnswerOffAndOneForAUserWhoHasGoneIsDropped) {
  identification.answer(202, R"({"retryAfter":1500})");
  identification.answer(202, R"({"retryAfter":-1})");
  identification.answer(200, numbers);
  identification.answer(200, R"({"pelorinoId":1})");
  start("ann");
  system.advance(1499ms);
  EXPECT_EQ(identification.requests.size(), 1U);
  PLRAnalytics::setUserId("bob");  // Another cycle is not begun meanwhile.
  EXPECT_EQ(
      timesLogged("DEBUG Receiving operation for user backend identifiers [bob] has been canceled"),
      1);
  system.advance(1ms);
  EXPECT_EQ(identification.requests.size(), 2U);
  system.advance(100ms);  // No request chases the one before it.
  std::string asked;
  for (const auto& request : identification.requests) {
    asked += header(request, "UserId").value_or("") + *request.body + "\n";
  }
  EXPECT_EQ(asked,
            "YW5u{\"attempt\":1}\nYW5u{\"attempt\":2}\nYW5u{\"attempt\":3}\n"
            "Ym9i{\"attempt\":1}\n")
      << "ann and bob, in Base64";
  EXPECT_EQ(rows(stored), "1||") << "what the answer leaves out is cleared";
  EXPECT_TRUE(logged(
      "DEBUG In the process of receiving backendidentifiers from the server, the user was changed. "
      "Request the identifiers again."));
}

TEST_F(LibraryTest, ARefusalEndsTheCycleAndLeavesTheIdentifiers) {
  const std::pair<int, std::string> refusals[] = {
      {422, "DEBUG BackendIdentifiers: doNotRetry"},
      {500, "ERROR BackendIdentifiers: [Backend Module] identifiers, unknown status code 500"},
  };
  std::size_t asked = 0;
  for (const auto& [status, line] : refusals) {
    SCOPED_TRACE(status);
    identification.answers = {{.status = status, .body = numbers, .error = {}}};
    start();
    system.advance(1h);
    EXPECT_EQ(identification.requests.size(), ++asked);
    EXPECT_TRUE(logged(line));
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
  PLRAnalytics::setTrackingAvailability(false);
  system.advance(30s);
  EXPECT_EQ(rows(stored), "||");
}

TEST_F(LibraryTest, IdentifiersBelongToTheDeviceWhichOutlivesItsDataAndToItsUser) {
  constexpr const char* identifiers =
      "SELECT deviceIdentifier, previousDeviceIdentifier, pelorinoId, crossPlatformPelorinoId, "
      "pelorinoIdTimestamp FROM deviceIdentifiers";
  const std::string id = device;
  identification.answer(200, numbers);
  start("ann");
  stop();
  std::filesystem::remove_all(file.support());
  for (int i = 0; i < 2; ++i) {
    start("ann");
    EXPECT_EQ(rows(identifiers), id + "||7|8|9");
    stop();
  }
  EXPECT_EQ(identification.requests.size(), 2U) << "known identifiers are not asked for";

  identification.answers = {{.status = 422, .body = {}, .error = {}}};
  start("bob");
  EXPECT_EQ(rows(identifiers), id + "||||");
  stop();
  rows(
      "UPDATE deviceIdentifiers SET pelorinoId=7, crossPlatformPelorinoId=8, "
      "pelorinoIdTimestamp=9");
  describe("99999999-2222-3333-4444-555555555555");
  start("bob");
  EXPECT_EQ(rows(identifiers), "99999999-2222-3333-4444-555555555555|" + id + "|||");
  EXPECT_EQ(identification.requests.size(), 4U);
}

}  // namespace
}  // namespace pelorino
