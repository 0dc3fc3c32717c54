#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <thread>

#include "AnyCall.h"

namespace pelorino {
namespace {

/// PELORINO_THREADS_SECONDS makes it longer.
std::chrono::seconds duration() {
  const char* told = std::getenv("PELORINO_THREADS_SECONDS");
  return std::chrono::seconds(told ? std::atoi(told) : 1);
}

TEST(Threads, MayAllCallAtOnceWhileTheLibraryComesAndGoes) {
  const TemporaryFolder folder;
  describeHost(folder);
  PLRAnalytics::initialize("key");
  std::atomic<bool> isOver = false;
  std::vector<std::thread> threads;
  for (unsigned seed = 0; seed < 16; ++seed) {
    threads.emplace_back([seed, &isOver] {
      std::mt19937 random(seed);
      // Much faster than the work can be done: now and then a thread waits for it.
      while (!isOver) {
        for (int i = 0; i < 50; ++i) callSomething(random);
        drain();
      }
    });
  }
  const auto end = std::chrono::steady_clock::now() + duration();
  int rounds = 0;
  for (; rounds < 3 || std::chrono::steady_clock::now() < end; ++rounds) {
    PLREngineWrapper::destroySDK();
    PLRAnalytics::initialize("key");
    drain();
  }
  isOver = true;
  for (auto& thread : threads) thread.join();
  PLREngineWrapper::destroySDK();
  drain();
  PLREngineWrapper::setEngineLoggerMessageClosure({});
  EXPECT_FALSE(PLREventsRouter::isAnalyticsInited());
  RecordProperty("rounds", rounds);
}

}  // namespace
}  // namespace pelorino
