#include <filesystem>

#include "LibraryTest.h"

namespace pelorino {
namespace {

constexpr const char* notInitialized =
    " method an error has occurred: The SDK is not initialized yet!";

TEST_F(LibraryTest, CallsBeforeTheStartAreRefusedAndAnsweredWithTheirFallback) {
  std::string answers;
  const auto text = [&](const std::string& value) { answers += "[" + value + "]"; };
  PLRAnalytics::customEvent("");
  PLRAnalytics::sendBufferedEvents();
  PLRAnalytics::getDeviceId(text);
  PLRAnalytics::getSDKVersion(text);
  PLRAnalytics::getUserId(text);
  PLRAnalytics::getCurrentLevel([&](std::int64_t level) { answers += std::to_string(level); });
  PLRAnalytics::getTrackingAvailability([&](bool on) { answers += on ? "on" : "off"; });
  EXPECT_TRUE(answers.empty()) << "nothing runs on the caller's thread";
  system.runUntilIdle();
  EXPECT_EQ(answers, "[][][]1off");
  std::vector<std::string> wanted;
  for (const char* label :
       {"customEvent(_:_:)", "sendBufferedEvents()", "getDeviceId(_:)", "getSDKVersion(_:)",
        "getUserId(_:)", "getCurrentLevel(_:)", "getTrackingAvailability(_:)"}) {
    wanted.push_back(std::string("ERROR In the ") + label + notInitialized);
  }
  EXPECT_EQ(log.lines(), wanted) << "and no validation messages";
}

TEST_F(LibraryTest, GettersAnswerOnceStarted) {
  PLRAnalyticsConfiguration decided;
  decided.userId = "ann";
  decided.currentLevel = 5;
  start(decided);
  std::string answers;
  const auto text = [&](const std::string& value) { answers += value + " "; };
  PLRAnalytics::getDeviceId(text);
  PLRAnalytics::getSDKVersion(text);
  PLRAnalytics::getUserId(text);
  PLRAnalytics::getCurrentLevel([&](std::int64_t level) { answers += std::to_string(level); });
  PLRAnalytics::getTrackingAvailability([&](bool on) { answers += on ? " on" : " off"; });
  PLRAnalytics::getUserId([](const std::string&) { throw std::runtime_error("a host's own"); });
  PLRAnalytics::getUserId(nullptr);
  system.runUntilIdle();
  EXPECT_EQ(answers, "11111111-2222-3333-4444-555555555555 2.1.2 ann 5 on");
  EXPECT_TRUE(logged("INFO Set level [5] for user [ann]"));
}

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
  std::string all;
  for (const auto& events : deliveredEvents()) all += events + " ";
  EXPECT_EQ(all, "ss di first second ");
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
  system.runUntilIdle();
  EXPECT_TRUE(
      logged("ERROR In the Initialize method an error has occurred: SDK is already initialized"));
  EXPECT_EQ(rows("SELECT applicationKey FROM projects"), "key");
}

TEST_F(LibraryTest, ARejectedKeyKeepsTheLibraryDownUntilItIsDestroyed) {
  PLRAnalytics::initialize("\x01\u200B");
  system.runUntilIdle();
  EXPECT_TRUE(logged("ERROR Execution of the Initialize method was canceled!"));
  EXPECT_FALSE(std::filesystem::exists(file.path()));
  report("early");
  EXPECT_TRUE(logged(std::string("ERROR In the customEvent(_:_:)") + notInitialized));
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
  rows("PRAGMA user_version = 3");
  start();
  EXPECT_TRUE(
      logged("ERROR In the Initialize method an error has occurred: Can't init submodules"));
  report("lost");
  EXPECT_TRUE(logged(std::string("ERROR In the customEvent(_:_:)") + notInitialized));
  EXPECT_EQ(rows("PRAGMA user_version"), "3");
}

TEST_F(LibraryTest, TrackingSwitchedOffDropsWhatIsPendingAndTellsTheBackend) {
  usualStatus.reset();
  start();
  report("boss");
  stop();
  ASSERT_NE(rows("SELECT count(*) FROM reports"), "0");

  usualStatus = 200;
  PLRAnalyticsConfiguration off;
  off.trackingAvailability = PLRTrackingStatus::disable;
  start(off);
  ASSERT_EQ(deliveredEvents(), std::vector<std::string>{"ts"});
  EXPECT_NE(delivered[0].body->find(R"("trackingAllowed":false)"), std::string::npos);
  report("dropped");
  EXPECT_TRUE(logged("DEBUG Event [ce] not created. Tracking is Disabled") ||
              rows("SELECT sessionId FROM users").empty());
  EXPECT_EQ(rows("SELECT (SELECT count(*) FROM events) + (SELECT count(*) FROM reports)"), "0");
  EXPECT_TRUE(logged("INFO SDK not active!\n\t Tracking status is Disable!"));

  stop();
  delivered.clear();
  start();  // Says nothing about tracking: it stays off.
  EXPECT_EQ(deliveredEvents(), std::vector<std::string>{"ts"});

  stop();
  delivered.clear();
  PLRAnalyticsConfiguration on;
  on.trackingAvailability = PLRTrackingStatus::enable;
  start(on);
  EXPECT_EQ(timesLogged("INFO Tracking status is Enable"), 1);
  ASSERT_FALSE(delivered.empty());
  EXPECT_NE(delivered[0].body->find(R"("trackingAllowed":true)"), std::string::npos);
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

TEST_F(LibraryTest, AListenerHearsOfAKnownIdentifierOnceItIsSet) {
  struct Listener : PLRIdentifiersListener {
    void didReceivePelorinoIdWith(std::int64_t id) override { heard.push_back(id); }
    std::vector<std::int64_t> heard;
  };
  const auto listener = std::make_shared<Listener>();
  start();
  stop();
  start();
  for (const char* id : {"NULL", "0", "7"}) {
    stop();
    rows(std::string("UPDATE deviceIdentifiers SET pelorinoId=") + id);
    start();
    PLRAnalytics::setIdentifiersListener(listener);
    system.runUntilIdle();
  }
  EXPECT_EQ(listener->heard, std::vector<std::int64_t>{7});
  PLRAnalytics::setIdentifiersListener(nullptr);
  system.runUntilIdle();
  EXPECT_EQ(listener->heard.size(), 1U);
}

TEST_F(LibraryTest, ATextParameterIsRepairedWhereItIsCollected) {
  PLRCustomEventParameters parameters;
  parameters.add("who", "a\xFF");
  EXPECT_EQ(parameters.getAllParameters().at("who"), PLRCustomEventParameters::Value("a\uFFFD"));
}

TEST_F(LibraryTest, ParametersAreLimitedWhereTheyAreCollected) {
  PLRCustomEventParameters parameters;
  for (int i = 0; i < 19; ++i) parameters.add("key" + std::to_string(i), i);
  parameters.add("key0", 100);
  EXPECT_EQ(parameters.getAllParameters().size(), 19U);
  parameters.add("key19", "text");
  parameters.add("key20", 1.5);
  parameters.add("key0", true);
  EXPECT_EQ(parameters.getAllParameters().size(), 20U);
  EXPECT_EQ(parameters.getAllParameters().at("key0"),
            PLRCustomEventParameters::Value(std::int64_t{100}));
  EXPECT_EQ(timesLogged("ERROR [CustomEventParameters] Limit of [20] is reached when adding a new "
                        "parameter"),
            2);
}

}  // namespace
}  // namespace pelorino
