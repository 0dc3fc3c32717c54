#include "LibraryTest.h"

namespace pelorino {
namespace {

using namespace std::chrono_literals;
using Packages = std::vector<std::string>;

TEST_F(LibraryTest, AnEventIsStoredSentAndDeletedOnceTheBackendHasIt) {
  start();
  EXPECT_EQ(deliveredEvents(), (Packages{"ss", "di"}));
  delivered.clear();

  PLRCustomEventParameters parameters;
  parameters.add("hp", 1);
  parameters.add("ratio", 0.5);
  parameters.add("hit", true);
  parameters.add("who", "x");
  PLRAnalytics::customEvent("boss", parameters);
  parameters.add("late", 1);
  const auto event = boost::json::parse(rows("SELECT eventJson FROM events"));
  EXPECT_EQ(event.at("parameters"),
            boost::json::parse(R"({"hit":true,"hp":1,"ratio":0.5,"who":"x"})"));
  EXPECT_EQ(event.at("sessionId"), DeterministicSystem::startTime);
  EXPECT_EQ(event.at("level"), 1);
  EXPECT_TRUE(delivered.empty()) << "an event waits for its batch";

  send();
  ASSERT_EQ(delivered.size(), 1U);
  EXPECT_EQ(delivered[0].url, "https://api.pelorino.example/v2/analytics/report?appId=key");
  EXPECT_TRUE(holds(delivered[0], R"("language":"en","appVersion":"1.4","appBuildVersion":"77")"));
  EXPECT_TRUE(holds(delivered[0], R"("bundle":"com.example.game")"));
  const auto sent = boost::json::parse(*delivered[0].body);
  EXPECT_EQ(sent.at("reports").at(0).at("packages").at(0).at("events").at(0), event);
  EXPECT_EQ(rows("SELECT (SELECT count(*) FROM events) + (SELECT count(*) FROM reports)"), "0");
}

TEST_F(LibraryTest, AReportGoesOutAgainUntilTheBackendAcceptsIt) {
  start();
  delivered.clear();
  statuses = {500, 201, std::nullopt};
  report("boss");
  for (int i = 0; i < 3; ++i) send();
  EXPECT_TRUE(delivered.empty());
  const std::string uuid = rows("SELECT uuid FROM reports");
  send();
  EXPECT_EQ(deliveredEvents(), Packages{"boss"});
  EXPECT_EQ(rows("SELECT count(*) FROM reports"), "0");
  EXPECT_EQ(timesLogged("INFO Trying to send the Report [" + uuid + "]"), 4);
  EXPECT_TRUE(logged("ERROR Report [" + uuid +
                     "] submission failed: [Backend Module] Failed to send Report, status code: "
                     "400"));
  EXPECT_TRUE(logged("DEBUG The network queue is stopped"));
}

TEST_F(LibraryTest, EnoughEventsOfAUserAreSentAtOnce) {
  start();
  delivered.clear();
  for (int i = 1; i <= 9; ++i) report(std::to_string(i));
  EXPECT_TRUE(delivered.empty());
  report("10");
  EXPECT_EQ(deliveredEvents(), Packages{"1 2 3 4 5 6 7 8 9 10"});
  EXPECT_TRUE(logged("DEBUG There are enough events for dispatching"));
}

TEST_F(LibraryTest, ABatchStopsAtItsFirstFailureAndBeginsWithTheOldestSession) {
  usualStatus.reset();
  for (const std::string user : {"a", "b", "c"}) {
    system.advance(1s);
    start(user);
    report("of " + user);
    stop();
  }
  rows(
      "UPDATE deviceIdentifiers SET pelorinoId=7, crossPlatformPelorinoId=8, "
      "pelorinoIdTimestamp=9");
  usualStatus = 200;
  statuses = {200, 500};
  start("c");
  EXPECT_EQ(delivered.size(), 1U);
  send();
  Packages users;
  for (const auto& request : delivered) {
    const std::string user =
        *header(request, "UserId") + "|" + header(request, "PelorinoId").value_or("");
    if (users.empty() || users.back() != user) users.push_back(user);
  }
  EXPECT_EQ(users, (Packages{"YQ==|", "Yg==|", "Yw==|7"}))
      << "the backend's identifiers are those of the active user";
}

/// Leaves a hundred reports behind, each with one event, whose code is its number.
class ManyReports : public LibraryTest {
 protected:
  ManyReports() {
    usualStatus.reset();
    start();
    rows(
        "DELETE FROM events; DELETE FROM reports; INSERT INTO reports (userId, packagesJson, uuid) "
        "WITH RECURSIVE n(i) AS "
        "(SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 100) SELECT 1, "
        "'[{\"language\":null,\"appVersion\":null,\"appBuildVersion\":null,\"sdkVersion\":\"2\","
        "\"sdkCodeVersion\":10,\"bundle\":null,\"events\":[{\"code\":\"' || i || '\"}]}]', i FROM "
        "n");
    stop();
  }
};

TEST_F(ManyReports, GoOutInOrder) {
  usualStatus = 200;
  statuses = {200, 200, 503};
  start();
  EXPECT_EQ(delivered.size(), 2U);
  send();
  const auto sent = deliveredEvents();
  ASSERT_GE(sent.size(), 100U);
  for (std::size_t i = 0; i < 100; ++i) EXPECT_EQ(sent[i], std::to_string(i + 1));
  EXPECT_EQ(rows("SELECT count(*) FROM reports"), "0");
}

TEST_F(LibraryTest, WithoutDeviceDataEventsWait) {
  const auto semaphore = std::shared_ptr<Semaphore>(system.executor().makeSemaphore());
  describe(device, [semaphore] { return semaphore->wait(1h); });
  PLRAnalytics::initialize("key");
  system.advance(21s);
  EXPECT_TRUE(logged("ERROR Cannot obtain device information!"));
  EXPECT_EQ(rows("SELECT code FROM events"), "ss") << "no device info, and nothing lost";
  report("boss");
  EXPECT_EQ(rows("SELECT count(*) FROM events"), "2") << "the one wait is over";
  semaphore->signal();
  send();
  EXPECT_EQ(system.waits().size(), 0U) << "the probe runs once";
  EXPECT_EQ(deliveredEvents(), Packages{"ss boss"});
}

TEST_F(LibraryTest, ALibraryThatIsKeptByAnExchangeSendsNothingBesideTheNextOne) {
  start();
  delivered.clear();
  system.http().setLatency(
      [](const HttpRequest& request) { return holds(request, R"("al")") ? 50s : 5s; });
  system.advance(5min);
  report("first");
  send();
  report("second");
  send();  // For when the batch under way has ended.
  stop();
  start();
  system.advance(2min);
  for (const char* name : {"al", "first", "second"}) EXPECT_EQ(timesDelivered(name), 1) << name;
}

/// A batch hands its reports to the network a few at a time.
TEST_F(ManyReports, AreLeftToTheNextLibraryByOneThatIsKeptByAnExchange) {
  start();
  system.http().setLatency([](const HttpRequest& request) {
    return holds(request, R"("al")") ? 50s : holds(request, R"("code":"16")") ? 20s : 0s;
  });
  system.advance(5min);
  delivered.clear();
  usualStatus = 200;
  send();
  stop();
  start();
  system.advance(2min);
  auto sent = deliveredEvents();
  std::erase_if(sent, [](const std::string& code) { return !std::isdigit(code.front()); });
  EXPECT_EQ(std::set(sent.begin(), sent.end()).size(), 100U);
  EXPECT_EQ(sent.size(), 100U);
}

TEST_F(LibraryTest, EditorModeLeavesTheApplicationsVersionsOut) {
  PLREngineWrapper::enableEditorMode();
  start();
  EXPECT_TRUE(holds(delivered.at(0), R"("appVersion":null,"appBuildVersion":null)"));
}

}  // namespace
}  // namespace pelorino
