#include "Core.h"
#include "LibraryTest.h"
#include "ProjectService.h"
#include "Validator.h"

namespace pelorino {
namespace {

using namespace std::chrono_literals;

TEST(MergedConfig, KeepsWhatTheBackendLeavesOutForItsVersion) {
  using Version = std::optional<std::int64_t>;
  using Bundles = std::optional<std::vector<std::string>>;
  const auto merged = [](Version storedVersion, Version version, const Bundles& bundles) {
    Config stored;
    stored.sbsBundles = {{"old"}};
    stored.sbsConfigVersion = storedVersion;
    stored.exclude = ExcludeEvents{.version = 1, .all = true, .events = {}};
    Config received;
    received.sbsBundles = bundles;
    received.sbsConfigVersion = version;
    return mergedConfig(stored, received);
  };
  const Bundles older({"old"}), newer({"new"});
  EXPECT_EQ(merged(4, 4, {}).sbsBundles, older);
  EXPECT_EQ(merged(4, 4, newer).sbsBundles, older) << "sent all the same";
  EXPECT_EQ(merged({}, {}, newer).sbsBundles, older);
  EXPECT_EQ(merged(4, 5, newer).sbsBundles, newer);
  EXPECT_EQ(merged(4, 5, {}).sbsBundles, std::nullopt);
  EXPECT_EQ(merged(4, {}, {}).sbsBundles, std::nullopt);
  EXPECT_FALSE(merged(4, 4, {}).exclude);
}

TEST_F(LibraryTest, TheConfigurationIsAskedForUntilItComes) {
  start();
  for (const int wait : {60, 120, 180, 240, 300, 360, 420, 480, 540, 600, 600}) {
    const auto asked = configuration.requests.size();
    system.advance(std::chrono::seconds(wait) - 1ms);
    EXPECT_EQ(configuration.requests.size(), asked) << wait;
    system.advance(1ms);
    EXPECT_EQ(configuration.requests.size(), asked + 1) << wait;
  }
  report("boss");
  EXPECT_EQ(rows("SELECT count(*) FROM events"), "1") << "the library works meanwhile";
  EXPECT_EQ(boost::json::parse(*configuration.requests[0].body),
            boost::json::parse(R"({"sdkVersion":"2.1.2","sdkCodeVersion":10,"appVersion":"1.4",)"
                               R"("sbsConfigVersion":0})"));

  configure(R"(,"sbsConfigVersion":3)");
  system.advance(1h);
  EXPECT_EQ(configuration.requests.size(), 13U) << "it has come";
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
  for (const std::string answer : {"{}", "\xFF\xFE", "{\"timeForRequest\":1e999}"}) {
    configuration.answers = {{.status = 200, .body = answer, .error = {}}};
    stop();
    start();
    EXPECT_EQ(rows("SELECT configuration FROM projects"), stored) << answer;
  }
  EXPECT_EQ(timesLogged("DEBUG Failed to get analytics configuration, using the default "
                        "configuration and retrying after 60 seconds"),
            3);
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
