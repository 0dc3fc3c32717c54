#include <filesystem>
#include <fstream>

#include "Core.h"
#include "LibraryTest.h"

namespace pelorino {
namespace {

TEST_F(LibraryTest, AStartInTheBackgroundWaitsForTheApplicationToBecomeActive) {
  PLRHost::setApplicationState(PLRApplicationState::background);
  PLRAnalytics::initialize("key");
  for (const char* name : {"first", "second"}) PLRAnalytics::customEvent(name);
  PLRHost::didEnterBackground();  // Waits for a queue that is paused: it must come back.
  system.advance(std::chrono::hours(1));
  EXPECT_FALSE(std::filesystem::exists(file.path()));

  PLRHost::didBecomeActive();
  system.runUntilIdle();
  send();
  EXPECT_EQ(deliveredEvents(), (std::vector<std::string>{"ss", "di", "first second"}));
}

TEST_F(LibraryTest, BecomingActiveDuringInitializeIsNotMissed) {
  start();
  PLRHost::didEnterBackground();
  // The line that refuses the second call is written after the state was read.
  PLREngineWrapper::setEngineLoggerMessageClosure(
      [](PLRLogLevel, const std::string&) { PLRHost::didBecomeActive(); });
  PLRAnalytics::initialize("key");
  PLREngineWrapper::setEngineLoggerMessageClosure(nullptr);
  report("boss");
  send();
  EXPECT_EQ(deliveredEvents().back(), "boss");
}

TEST_F(LibraryTest, OnlyTheFirstInitializeIsAccepted) {
  PLRAnalytics::initialize("key");
  PLRAnalytics::initialize("other");
  EXPECT_TRUE(
      logged("ERROR In the Initialize method an error has occurred: SDK is already initialized"));
  EXPECT_EQ(rows("SELECT applicationKey FROM projects"), "key");
}

TEST_F(LibraryTest, ACallThatStillFindsALibraryTornDownIsRefused) {
  start();
  const auto kept = Core::shared();  // As by a thread of the host that is amid a call.
  stop();
  start();
  kept->analyticsProxy().perform(SetTrackingAvailabilityCall{false});
  kept->peopleLogic().clearUser("clearUser()");
  system.runUntilIdle();
  EXPECT_EQ(rows("SELECT trackingAvailable FROM projects"), "1");
  for (const std::string label : {"setTrackingAvailability(_:)", "clearUser()"}) {
    EXPECT_TRUE(logged("ERROR In the " + label +
                       " method an error has occurred: The SDK is not initialized yet!"));
  }
}

TEST_F(LibraryTest, ARejectedKeyKeepsTheLibraryDownUntilItIsDestroyed) {
  PLRAnalytics::initialize("\x01\u200B");
  EXPECT_TRUE(logged("ERROR Execution of the Initialize method was canceled!"));
  EXPECT_FALSE(std::filesystem::exists(file.path()));
  stop();
  start();
  EXPECT_FALSE(delivered.empty());
}

TEST_F(LibraryTest, TheConfiguredLogLevelRulesBeforeAnythingIsValidated) {
  PLRAnalyticsConfiguration decided;
  decided.logLevel = PLRLogLevel::no;
  PLRAnalytics::initialize("", decided);
  system.runUntilIdle();
  EXPECT_TRUE(log.lines().empty());
}

TEST_F(LibraryTest, ADatabaseThatCannotBeOpenedLeavesTheHostRunning) {
  const std::string garbage(4096, 'x');
  std::filesystem::create_directories(file.folder());
  std::ofstream(file.path()) << garbage;
  start();
  EXPECT_TRUE(
      logged("ERROR In the Initialize method an error has occurred: Can't init submodules"));
  report("lost");
  EXPECT_EQ(std::filesystem::file_size(file.path()), garbage.size()) << "left alone";
}

TEST_F(LibraryTest, TrackingSwitchedOffDropsWhatIsPendingAndTellsTheBackend) {
  usualStatus.reset();
  start();
  report("boss");
  stop();
  ASSERT_NE(rows("SELECT count(*) FROM reports"), "0");
  usualStatus = 200;

  using Status = PLRTrackingStatus;
  for (const Status status : {Status::disable, Status::unknown, Status::enable}) {
    const bool isAllowed = status == Status::enable;  // One that says nothing leaves it off.
    PLRAnalyticsConfiguration decided;
    decided.trackingAvailability = status;
    delivered.clear();
    start(decided);
    ASSERT_EQ(deliveredEvents(), std::vector<std::string>{isAllowed ? "ts di" : "ts"});
    EXPECT_TRUE(holds(delivered[0],
                      isAllowed ? R"("trackingAllowed":true)" : R"("trackingAllowed":false)"));
    report("next");
    EXPECT_EQ(rows("SELECT (SELECT count(*) FROM events) + (SELECT count(*) FROM reports)"),
              isAllowed ? "1" : "0");
    stop();
  }
  EXPECT_EQ(timesLogged("INFO SDK not active!\n\t Tracking status is Disable!"), 2);
  EXPECT_EQ(timesLogged("INFO Tracking status is Enable"), 1);
}

TEST_F(LibraryTest, AnUpgradeOfTheLibraryIsToldOnce) {
  start();
  stop();
  PLREngineWrapper::setSDKVersion("2.2.0");
  for (int i = 0; i < 2; ++i) {
    start();
    stop();
  }
  PLREngineWrapper::setSDKVersion("2.1.2");
  EXPECT_EQ(timesLogged("DEBUG SDK version updated"), 1);
}

TEST_F(LibraryTest, ParametersAreRepairedAndLimitedWhereTheyAreCollected) {
  using Value = PLRCustomEventParameters::Value;
  PLRCustomEventParameters parameters;
  for (int i = 0; i < 19; ++i) parameters.add("key" + std::to_string(i), i);
  parameters.add("who", "a\xFF");
  parameters.add("late", 1.5);
  parameters.add("key0", true);
  EXPECT_EQ(parameters.getAllParameters().size(), 20U);
  EXPECT_EQ(parameters.getAllParameters().at("who"), Value("a\uFFFD"));
  EXPECT_EQ(parameters.getAllParameters().at("key0"), Value(std::int64_t{0}));
  EXPECT_EQ(timesLogged("ERROR [CustomEventParameters] Limit of [20] is reached when adding a new "
                        "parameter"),
            2);
}

}  // namespace
}  // namespace pelorino
