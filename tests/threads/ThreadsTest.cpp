#include <gtest/gtest.h>
#include <pelorino/PLRAnalytics.h>
#include <pelorino/PLREngineWrapper.h>
#include <pelorino/PLREventsRouter.h>
#include <pelorino/PLRHost.h>

#include <atomic>
#include <chrono>
#include <future>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "TemporaryFolder.h"

namespace pelorino {
namespace {

void describeHost(const TemporaryFolder& folder) {
  PLRHostDescription host;
  host.supportDirectory = folder.file("support");
  host.keyStoreFile = folder.file("keys");
  PLRHost::describe(host);
  PLRAnalytics::setTestProxyUrl("http://127.0.0.1:9");  // Nobody answers there.
}

/// Returns when everything handed over before has run. A start in the background holds the queue
/// back until the application becomes active.
void drain() {
  auto done = std::make_shared<std::promise<void>>();
  const auto hasRun = done->get_future();
  PLRAnalytics::getSDKVersion([done](const std::string&) { done->set_value(); });
  done.reset();
  while (hasRun.wait_for(std::chrono::milliseconds(50)) != std::future_status::ready) {
    PLRHost::didBecomeActive();
  }
}

void callSomething(std::mt19937& random) {
  static const std::vector<void (*)()> calls = {
      [] { PLRAnalytics::customEvent("plain"); },
      [] {
        PLRCustomEventParameters parameters;
        for (int i = 0; i < 5; ++i) parameters.add(std::to_string(i), i);
        PLRAnalytics::customEvent("full", parameters);
      },
      [] { PLRAnalytics::sendBufferedEvents(); },
      [] { PLRAnalytics::getDeviceId([](const std::string&) { PLRAnalytics::testLogs(); }); },
      [] { PLRAnalytics::getUserId([](const std::string&) { PLRHost::willResignActive(); }); },
      [] { PLRAnalytics::setUserId("ann"); },
      [] { PLRAnalytics::setUserId(""); },
      [] { PLRAnalytics::setCurrentLevel(3); },
      [] { PLRAnalytics::setTrackingAvailability(false); },
      [] { PLRAnalytics::setTrackingAvailability(true); },
      [] { PLRAnalytics::setIdentifiersListener(std::make_shared<PLRIdentifiersListener>()); },
      [] { PLRAnalytics::setLogLevel(PLRLogLevel::debug); },
      [] {
        PLREngineWrapper::setEngineLoggerMessageClosure([](PLRLogLevel, const std::string&) {});
      },
      [] { PLREngineWrapper::setSDKVersion("2.1.2"); },
      [] { PLREngineWrapper::enableEditorMode(); },
      [] { PLREngineWrapper::testString("text"); },
      [] { static_cast<void>(PLREventsRouter::isAnalyticsInited()); },
      [] { static_cast<void>(PLRAnalytics::sdkFolderPath()); },
      [] { PLRHost::didBecomeActive(); },
      [] { PLRHost::didEnterBackground(); },
      [] { PLRAnalytics::initialize("key"); },
  };
  calls[random() % calls.size()]();
}

TEST(Threads, MayAllCallAtOnce) {
  const TemporaryFolder folder;
  describeHost(folder);
  PLRAnalytics::initialize("key");
  std::vector<std::thread> threads;
  for (unsigned seed = 0; seed < 8; ++seed) {
    threads.emplace_back([seed] {
      std::mt19937 random(seed);
      for (int i = 0; i < 100; ++i) callSomething(random);
    });
  }
  std::atomic<bool> isOver = false;
  std::thread destroyer([&] {
    while (!isOver) {
      PLREngineWrapper::destroySDK();
      PLRAnalytics::initialize("key");
      drain();
    }
  });
  for (auto& thread : threads) thread.join();
  isOver = true;
  destroyer.join();
  PLREngineWrapper::destroySDK();
  drain();
  PLREngineWrapper::setEngineLoggerMessageClosure({});
  EXPECT_FALSE(PLREventsRouter::isAnalyticsInited());
}

}  // namespace
}  // namespace pelorino
