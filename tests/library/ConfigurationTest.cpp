#include "LibraryTest.h"
#include "ProjectService.h"
#include "Validator.h"

namespace pelorino {
namespace {

using namespace std::chrono_literals;

constexpr const char* required =
    R"({"timeForRequest":120000,"countForRequest":10,"eventParamsCount":20,)"
    R"("sessionTimeout":600000,"serverTime":1,"aliveTimeout":300000,"userCounting":true)";

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
  Config received;
  received.exclude = ExcludeEvents{.version = 1, .all = false, .events = {}};
  EXPECT_EQ(mergedConfig(stored, received).exclude->all, true);
  received.exclude->version = 2;
  EXPECT_EQ(mergedConfig(stored, received).exclude->all, false);
  received.exclude.reset();
  EXPECT_FALSE(mergedConfig(stored, received).exclude);
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

  configuration.answer(200, std::string(required) + R"(,"sbsConfigVersion":3})");
  system.advance(600s);
  EXPECT_EQ(configuration.requests.size(), 15U);
  system.advance(std::chrono::hours(1));
  EXPECT_EQ(configuration.requests.size(), 15U);
  stop();
  start();
  EXPECT_EQ(boost::json::parse(*configuration.requests.back().body).at("sbsConfigVersion"), 3);
}

TEST_F(LibraryTest, AnAnswerThatIsNoConfigurationLeavesTheStoredOne) {
  configuration.answer(200, std::string(required) + "}");
  start();
  const std::string stored = rows("SELECT configuration FROM projects");
  stop();
  const std::string deep(10'000, '[');
  std::string many;
  for (int i = 0; i < 100'000; ++i) many += ",1";
  for (const std::string& answer :
       {std::string("{}"), deep, std::string("{\"timeForRequest\":\"x\"}"), std::string("\xFF\xFE"),
        std::string(required) + R"(,"timeForRequest":1e999})",
        std::string(required) + R"(,"exclude":{"all":true}})",
        std::string(required) + R"(,"sessionTimeout":1})",
        std::string(required) + R"(,"exclude":{"version":1,"events":{"ce":[],"ce":[]}}})",
        std::string(required) + R"(,"exclude":{"version":1,"events":{"ce":[0)" + many + "]}}}",
        std::string(required)}) {
    configuration.answers = {{.status = 200, .body = answer, .error = {}}};
    start();
    EXPECT_EQ(rows("SELECT configuration FROM projects"), stored) << answer.substr(0, 80);
    stop();
  }
  EXPECT_EQ(timesLogged("DEBUG Failed to get analytics configuration, using the default "
                        "configuration and retrying after 60 seconds"),
            10);
}

TEST_F(LibraryTest, ExclusionsStopTheEventsThatTheyNameOnceTheyHaveArrived) {
  configuration.answer(
      200, std::string(required) + R"(,"exclude":{"version":1,"events":{"ce":["boss"],"di":[]}}})");
  start();
  for (const char* name : {"boss", "door"}) report(name);
  EXPECT_TRUE(logged("INFO Event [ce] with [boss] argument is excluded by project configuration"));
  EXPECT_EQ(rows("SELECT eventJson LIKE '%door%' FROM events"), "1");
  stop();

  // In a new process the stored configuration is in force, its list of exclusions is not yet.
  Validator::setExcludedOptions(std::nullopt);
  configuration.answers.clear();
  configuration.answer(503, "");
  start();
  report("boss");
  EXPECT_EQ(rows("SELECT count(*) FROM events WHERE eventJson LIKE '%boss%'"), "1");
  stop();

  configuration.answers.clear();
  configuration.answer(200, std::string(required) + R"(,"exclude":{"version":1}})");
  start();
  report("boss");
  EXPECT_EQ(
      timesLogged("INFO Event [ce] with [boss] argument is excluded by project configuration"), 2)
      << "the same version keeps the stored list";
  EXPECT_EQ(boost::json::parse(*configuration.requests.back().body).at("excludeVersion"), 1);
  stop();

  configuration.answers.clear();
  configuration.answer(200, std::string(required) + R"(,"exclude":{"version":2,"all":true}})");
  start();
  const std::string before = rows("SELECT count(*) FROM events");
  report("door");
  EXPECT_TRUE(logged("INFO All events is excluded by project configuration"));
  EXPECT_EQ(rows("SELECT count(*) FROM events"), before);
  Validator::setExcludedOptions(std::nullopt);
}

TEST_F(LibraryTest, TheEndOfSingleAccountsRemovesTheInactiveUsers) {
  usualStatus.reset();
  start(std::string("ann"));
  restart("bob");
  stop();
  std::string one(required);
  one.replace(one.find("true"), 4, "false");
  configuration.answer(200, one + "}");
  start(std::string("bob"));
  EXPECT_TRUE(logged("DEBUG Remove inactive users [ann]"));
  EXPECT_EQ(rows("SELECT userId FROM users"), "bob");
  EXPECT_EQ(rows("SELECT count(*) FROM reports WHERE userId NOT IN (SELECT id FROM users)"), "0");
}

}  // namespace
}  // namespace pelorino
