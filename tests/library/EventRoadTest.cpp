#include "LibraryTest.h"

namespace pelorino {
namespace {

TEST_F(LibraryTest, AnEventIsStoredSentAndDeletedOnceTheBackendHasIt) {
  start();
  EXPECT_EQ(deliveredEvents(), (std::vector<std::string>{"ss", "di"}));
  delivered.clear();

  PLRCustomEventParameters parameters;
  parameters.add("hp", 1);
  parameters.add("ratio", 0.5);
  parameters.add("hit", true);
  parameters.add("who", "x");
  PLRAnalytics::customEvent("boss", parameters);
  parameters.add("late", 1);
  system.runUntilIdle();
  const std::string json = rows("SELECT eventJson FROM events");
  const auto event = boost::json::parse(json).as_object();
  EXPECT_EQ(
      boost::json::serialize(event.at("parameters")),
      boost::json::serialize(boost::json::parse(R"({"hit":true,"hp":1,"ratio":0.5,"who":"x"})")));
  EXPECT_EQ(event.at("sessionId"), DeterministicSystem::startTime);
  EXPECT_EQ(event.at("level"), 1);
  EXPECT_TRUE(delivered.empty()) << "an event waits for its batch";

  send();
  ASSERT_EQ(delivered.size(), 1U);
  EXPECT_EQ(delivered[0].url, "https://api.pelorino.example/v2/analytics/report?appId=key");
  const auto body = boost::json::parse(*delivered[0].body);
  const auto& package = body.at("reports").at(0).at("packages").at(0).as_object();
  EXPECT_EQ(package.at("events").at(0), event);
  EXPECT_EQ(package.at("language"), "en");
  EXPECT_EQ(package.at("appVersion"), "1.4");
  EXPECT_EQ(package.at("appBuildVersion"), "77");
  EXPECT_EQ(package.at("bundle"), "com.example.game");
  EXPECT_EQ(rows("SELECT (SELECT count(*) FROM events) + (SELECT count(*) FROM reports)"), "0");
}

TEST_F(LibraryTest, AReportGoesOutAgainUntilTheBackendAcceptsIt) {
  start();
  delivered.clear();
  for (const auto refusal : {std::optional(500), std::optional(201), std::optional<int>()}) {
    statuses.push_back(refusal);
  }
  report("boss");
  std::vector<std::string> uuids;
  for (int i = 0; i < 3; ++i) {
    send();
    uuids.push_back(rows("SELECT uuid FROM reports"));
  }
  EXPECT_TRUE(delivered.empty());
  EXPECT_EQ(uuids, std::vector(3, uuids[0])) << "one report, the same every time";
  send();
  EXPECT_EQ(deliveredEvents(), std::vector<std::string>{"boss"});
  EXPECT_EQ(rows("SELECT count(*) FROM reports"), "0");
  EXPECT_EQ(timesLogged("INFO Trying to send the Report [" + uuids[0] + "]"), 4);
  EXPECT_TRUE(logged("ERROR Report [" + uuids[0] +
                     "] submission failed: [Backend Module] Failed to send Report, status code: "
                     "400"));
  EXPECT_TRUE(logged("DEBUG The network queue is stopped"));
}

TEST_F(LibraryTest, EnoughEventsOfAUserAreSentAtOnceAndLargeBatchesAreSplit) {
  start();
  delivered.clear();
  for (int i = 1; i <= 9; ++i) report(std::to_string(i));
  EXPECT_TRUE(delivered.empty());
  report("10");
  EXPECT_EQ(deliveredEvents(), std::vector<std::string>{"1 2 3 4 5 6 7 8 9 10"});
  EXPECT_TRUE(logged("DEBUG There are enough events for dispatching"));

  delivered.clear();
  for (int i = 1; i <= 25; ++i) PLRAnalytics::customEvent(std::to_string(i));
  usualStatus.reset();
  system.runUntilIdle();
  usualStatus = 200;
  send();
  std::string all;
  for (const auto& package : deliveredEvents()) {
    EXPECT_LE(std::ranges::count(package, ' '), 9);
    all += package + ' ';
  }
  std::string wanted;
  for (int i = 1; i <= 25; ++i) wanted += std::to_string(i) + ' ';
  EXPECT_EQ(all, wanted) << "in order, none twice";
}

TEST_F(LibraryTest, ATriggerDuringASlowBatchLosesNothingAndStartsNoSecondBatch) {
  start();
  delivered.clear();
  system.http().setLatency(std::chrono::seconds(10));
  report("first");
  send();
  report("second");
  send();
  EXPECT_EQ(delivered.size(), 1U) << "one is under way";
  system.advance(std::chrono::seconds(25));
  EXPECT_EQ(deliveredEvents(), (std::vector<std::string>{"first", "second"}));
}

TEST_F(LibraryTest, ABatchStopsAtItsFirstFailure) {
  usualStatus.reset();
  for (const char* user : {"a", "b", "c"}) {
    system.advance(std::chrono::seconds(1));
    start(std::string(user));
    report(std::string("of ") + user);
    stop();
  }
  usualStatus = 200;
  statuses = {200, 500};
  start(std::string("c"));
  EXPECT_EQ(delivered.size(), 1U);
  EXPECT_EQ(rows("SELECT u.userId, count(*) FROM reports r JOIN users u ON u.id=r.userId "
                 "GROUP BY u.id"),
            "a|2\nb|3\nc|4")
      << "the first is gone, the second and all behind it stay";
  send();
  ASSERT_GE(delivered.size(), 3U);
  std::vector<std::string> users;
  for (const auto& request : delivered) {
    if (users.empty() || users.back() != header(request, "UserId")) {
      users.push_back(header(request, "UserId").value_or(""));
    }
  }
  EXPECT_EQ(users, (std::vector<std::string>{"YQ==", "Yg==", "Yw=="})) << "older sessions first";
}

TEST_F(LibraryTest, AllThatWaitGoOutInOrderHoweverManyTheyAre) {
  usualStatus.reset();
  start(std::string("a"));
  restart("b");
  rows("DELETE FROM events; DELETE FROM reports");
  rows(
      "INSERT INTO reports (userId, packagesJson, uuid) WITH RECURSIVE n(i) AS "
      "(SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 100) SELECT (SELECT id FROM users WHERE "
      "userId = CASE WHEN i % 2 THEN 'a' ELSE 'b' END), CASE i WHEN 7 THEN 'none' ELSE "
      "'[{\"language\":null,\"appVersion\":null,\"appBuildVersion\":null,\"sdkVersion\":\"2\","
      "\"sdkCodeVersion\":10,\"bundle\":null,\"events\":[{\"code\":\"' || i || '\"}]}]' END, i "
      "FROM n");
  stop();
  usualStatus = 200;
  statuses = {200, 200, 503};
  start(std::string("b"));
  EXPECT_EQ(delivered.size(), 2U);
  send();
  std::vector<std::string> wanted;
  for (const int first : {1, 2}) {
    for (int i = first; i <= 100; i += 2) {
      if (i != 7) wanted.push_back(std::to_string(i));  // Goes out without packages.
    }
  }
  auto sent = deliveredEvents();
  ASSERT_GE(sent.size(), wanted.size());
  sent.resize(wanted.size());
  EXPECT_EQ(sent, wanted);
  EXPECT_EQ(rows("SELECT count(*) FROM reports"), "0");
}

TEST_F(LibraryTest, OnlyTheActiveUserCarriesTheBackendsIdentifiers) {
  usualStatus.reset();
  start(std::string("a"));
  restart("b");
  stop();
  rows(
      "UPDATE deviceIdentifiers SET pelorinoId=7, crossPlatformPelorinoId=8, "
      "pelorinoIdTimestamp=9");
  usualStatus = 200;
  start(std::string("b"));
  std::map<std::string, std::optional<std::string>> ids;
  for (const auto& request : delivered) {
    ids[*header(request, "UserId")] = header(request, "PelorinoId");
  }
  EXPECT_EQ(ids["YQ=="], std::nullopt);
  EXPECT_EQ(ids["Yg=="], "7");
}

TEST_F(LibraryTest, EventsStayWhenTheirReportCannotBeStored) {
  start();
  delivered.clear();
  report("boss");
  rows("CREATE TRIGGER refuse BEFORE INSERT ON reports BEGIN SELECT RAISE(ABORT, 'full'); END");
  send();
  EXPECT_EQ(rows("SELECT count(*) FROM events"), "1");
  EXPECT_TRUE(delivered.empty());
  rows("DROP TRIGGER refuse");
  send();
  EXPECT_EQ(deliveredEvents(), std::vector<std::string>{"boss"});
}

TEST_F(LibraryTest, WithoutDeviceDataEventsWait) {
  PLRHostDescription host;
  host.applicationName = "game";
  host.supportDirectory = file.support();
  host.keyStoreFile = file.support() + ".keys";
  const auto semaphore = std::shared_ptr<Semaphore>(system.executor().makeSemaphore());
  host.integrityProbe = [semaphore] { return semaphore->wait(std::chrono::hours(1)); };
  PLRHost::describe(host);
  PLRAnalytics::initialize("key");
  system.advance(std::chrono::minutes(10));
  EXPECT_TRUE(logged("ERROR Cannot obtain device information!"));
  EXPECT_EQ(rows("SELECT code FROM events"), "ss") << "no device info, and nothing lost";
  while (!system.waits().empty()) {  // Each read before the first answer has asked for itself.
    semaphore->signal();
    system.runUntilIdle();
  }
  send();
  EXPECT_EQ(deliveredEvents(), std::vector<std::string>{"ss"});
}

TEST_F(LibraryTest, ATearDownDuringAnExchangeNeitherLosesNorRepeatsTheReport) {
  start();
  delivered.clear();
  system.http().setLatency(std::chrono::seconds(5));
  report("boss");
  send();
  PLREngineWrapper::destroySDK();
  system.advance(std::chrono::seconds(6));
  EXPECT_EQ(rows("SELECT count(*) FROM reports"), "0");
  start();
  system.advance(std::chrono::seconds(60));
  EXPECT_EQ(std::ranges::count(deliveredEvents(), std::string("boss")), 1);
}

TEST_F(LibraryTest, ATearDownLeavesTheRestOfABatchToTheNextStart) {
  usualStatus.reset();
  start();
  for (const char* name : {"first", "second", "third"}) {
    report(name);
    send();
  }
  usualStatus = 200;
  system.http().setLatency(std::chrono::seconds(5));
  send();
  PLREngineWrapper::destroySDK();
  system.runUntilIdle();
  start();
  system.advance(std::chrono::seconds(60));
  const auto events = deliveredEvents();
  for (const char* name : {"first", "second", "third"}) {
    EXPECT_EQ(std::ranges::count(events, std::string(name)), 1) << name;
  }
}

TEST_F(LibraryTest, AStartDuringTheExchangeOfTheOneBeforeSendsNothingTwice) {
  start();
  delivered.clear();
  system.http().setLatency(std::chrono::seconds(5));
  report("boss");
  send();
  stop();
  start();
  system.advance(std::chrono::seconds(60));
  EXPECT_EQ(timesLogged("DEBUG Start activity"), 2);
  EXPECT_EQ(std::ranges::count(deliveredEvents(), std::string("boss")), 1);
  EXPECT_EQ(rows("SELECT count(*) FROM reports"), "0");
}

TEST_F(LibraryTest, ALibraryThatIsKeptByAnExchangeSendsNothingBesideTheNextOne) {
  start();
  delivered.clear();
  system.http().setLatency([](const HttpRequest& request) {
    const bool isAlive = request.body->find(R"("al")") != std::string::npos;
    return std::chrono::seconds(isAlive ? 50 : 5);
  });
  system.advance(std::chrono::minutes(5));
  report("first");
  send();
  report("second");
  send();  // For when the batch under way has ended.
  stop();
  start();
  system.advance(std::chrono::minutes(2));
  const auto events = deliveredEvents();
  EXPECT_EQ(std::ranges::count(events, std::string("al")), 1);
  for (const char* name : {"first", "second"}) {
    EXPECT_EQ(std::ranges::count(events, std::string(name)), 1) << name;
  }
}

TEST_F(LibraryTest, AProgramThatEndsRightAfterItsFirstCallsLosesNothing) {
  usualStatus.reset();
  PLRAnalytics::initialize("key");
  PLRAnalytics::customEvent("only");
  PLRHost::willTerminate();
  EXPECT_EQ(rows("SELECT count(*) FROM reports WHERE packagesJson LIKE '%only%'"), "1");
}

TEST_F(LibraryTest, EditorModeLeavesTheApplicationsVersionsOut) {
  PLREngineWrapper::enableEditorMode();
  start();
  ASSERT_FALSE(delivered.empty());
  const auto body = boost::json::parse(*delivered[0].body);
  const auto& package = body.at("reports").at(0).at("packages").at(0);
  EXPECT_TRUE(package.at("appVersion").is_null());
  EXPECT_TRUE(package.at("appBuildVersion").is_null());
  EXPECT_EQ(package.at("bundle"), "com.example.game");
}

}  // namespace
}  // namespace pelorino
