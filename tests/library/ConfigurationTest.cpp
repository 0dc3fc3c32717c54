#include "Core.h"
#include "LibraryTest.h"
#include "ProjectService.h"
#include "Validator.h"

namespace pelorino {
namespace {

using namespace std::chrono_literals;

TEST(MergedConfig, KeepsWhatTheBackendLeavesOutForItsVersion) {
  using Bundles = std::optional<std::vector<std::string>>;
  struct Case {
    const char* label;
    std::optional<std::int64_t> storedVersion, receivedVersion;
    Bundles received, wanted;
  };
  const Case bundles[] = {
      {"same version", 4, 4, {}, Bundles({"old"})},
      {"same version, sent all the same", 4, 4, Bundles({"new"}), Bundles({"old"})},
      {"both without a version", {}, {}, Bundles({"new"}), Bundles({"old"})},
      {"new version", 4, 5, Bundles({"new"}), Bundles({"new"})},
      {"new version without bundles", 4, 5, {}, {}},
      {"version gone", 4, {}, {}, {}},
  };
  for (const Case& c : bundles) {
    Config stored;
    stored.sbsBundles = {{"old"}};
    stored.sbsConfigVersion = c.storedVersion;
    Config received;
    received.sbsBundles = c.received;
    received.sbsConfigVersion = c.receivedVersion;
    EXPECT_EQ(mergedConfig(stored, received).sbsBundles, c.wanted) << c.label;
  }

  Config stored;
  stored.exclude = ExcludeEvents{.version = 1, .all = true, .events = {}};
  EXPECT_FALSE(mergedConfig(stored, Config()).exclude);
}

TEST_F(LibraryTest, TheConfigurationIsAskedForUntilItComes) {
  start();
  std::vector<std::int64_t> waits;
  auto last = system.elapsed();
  while (configuration.requests.size() < 14) {
    const auto before = configuration.requests.size();
    system.advance(1s);
    if (configuration.requests.size() == before) continue;
    waits.push_back((system.elapsed() - last).count() / 1000);
    last = system.elapsed();
  }
  EXPECT_EQ(waits, (std::vector<std::int64_t>{60, 120, 180, 240, 300, 360, 420, 480, 540, 600, 600,
                                              600, 600}));
  report("boss");
  EXPECT_EQ(rows("SELECT count(*) FROM events"), "1") << "the library works meanwhile";
  EXPECT_EQ(boost::json::parse(*configuration.requests[0].body),
            boost::json::parse(R"({"sdkVersion":"2.1.2","sdkCodeVersion":10,"appVersion":"1.4",)"
                               R"("sbsConfigVersion":0})"));

  configure(R"(,"sbsConfigVersion":3)");
  system.advance(1h);
  EXPECT_EQ(configuration.requests.size(), 15U);
  stop();
  start();
  EXPECT_EQ(boost::json::parse(*configuration.requests.back().body).at("sbsConfigVersion"), 3);
}

TEST_F(LibraryTest, AnAnswerForALibraryThatWasTornDownChangesNothing) {
  configure();
  configuration.answer(404, "");
  system.http().setLatency(5s);
  start("bert");
  const auto kept = Core::shared();  // As by a thread of the host that is amid a call.
  stop();
  start("bert");
  PLRAnalytics::setUserId("anna");
  system.advance(1min);
  EXPECT_EQ(rows("SELECT userId FROM users JOIN projects ON activeUserId = users.id"), "anna");
}

TEST_F(LibraryTest, AnAnswerThatIsNoConfigurationLeavesTheStoredOne) {
  configure();
  start();
  const std::string stored = rows("SELECT configuration FROM projects");
  stop();
  const std::string answers[] = {
      "{}",
      "\xFF\xFE",
      configurationWith(R"(,"timeForRequest":1e999)"),
      configurationWith(R"(,"exclude":{"version":1,"events":{"ce":[],"ce":[]}})"),
  };
  for (const std::string& answer : answers) {
    configuration.answers = {{.status = 200, .body = answer, .error = {}}};
    start();
    EXPECT_EQ(rows("SELECT configuration FROM projects"), stored) << answer;
    stop();
  }
  EXPECT_EQ(timesLogged("DEBUG Failed to get analytics configuration, using the default "
                        "configuration and retrying after 60 seconds"),
            4);
}

TEST_F(LibraryTest, ExclusionsStopTheEventsThatTheyNameOnceTheyHaveArrived) {
  configure(R"(,"exclude":{"version":1,"events":{"ce":["boss"],"di":[]}})");
  start();
  for (const char* name : {"boss", "door"}) report(name);
  const std::string excluded =
      "INFO Event [ce] with [boss] argument is excluded by project configuration";
  EXPECT_EQ(timesLogged(excluded), 1);
  EXPECT_EQ(rows("SELECT eventJson LIKE '%door%' FROM events"), "1");
  stop();

  // In a new process the stored configuration is in force, its list of exclusions is not yet.
  Validator::setExcludedOptions(std::nullopt);
  configuration.answers = {{.status = 503, .body = {}, .error = {}}};
  start();
  report("boss");
  EXPECT_EQ(rows("SELECT count(*) FROM events WHERE eventJson LIKE '%boss%'"), "1");
  stop();

  configure(R"(,"exclude":{"version":1})");
  start();
  report("boss");
  EXPECT_EQ(timesLogged(excluded), 2) << "the same version keeps the stored list";
  EXPECT_EQ(boost::json::parse(*configuration.requests.back().body).at("excludeVersion"), 1);
  stop();

  configure(R"(,"exclude":{"version":2,"all":true})");
  start();
  const std::string before = rows("SELECT count(*) FROM events");
  report("door");
  EXPECT_TRUE(logged("INFO All events is excluded by project configuration"));
  EXPECT_EQ(rows("SELECT count(*) FROM events"), before);
  Validator::setExcludedOptions(std::nullopt);
}

}  // namespace
}  // namespace pelorino
