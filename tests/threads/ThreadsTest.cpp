#include <atomic>
#include <cstdlib>

#include "AnyCall.h"

namespace pelorino {
namespace {

/// PELORINO_THREADS_SECONDS makes it longer.
std::chrono::seconds duration() {
  const char* told = std::getenv("PELORINO_THREADS_SECONDS");
  return std::chrono::seconds(told ? std::atoi(told) : 1);
}

class Threads : public AnyCallTest {};

TEST_F(Threads, MayAllCallAtOnceWhileTheLibraryComesAndGoes) {
  PLRAnalytics::initialize("key");
  {
    const Callers callers(16);
    const auto over = std::chrono::steady_clock::now() + duration();
    for (int rounds = 0; rounds < 3 || std::chrono::steady_clock::now() < over; ++rounds) {
      PLREngineWrapper::destroySDK();
      PLRAnalytics::initialize("key");
      drain();
    }
  }
  end();
  EXPECT_FALSE(PLREventsRouter::isAnalyticsInited());
}

TEST(Exit, GoesOnWhileThreadsOfTheHostAskThatItJoins) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  static std::atomic<int> answers{0};
  static std::atomic<bool> isOver{false};
  static std::thread* asking = nullptr;
  const auto live = [] {
    // Runs after the library has begun to keep its own threads from the host's code.
    std::atexit([] {
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
      isOver = true;
      asking->join();
    });
    asking = new std::thread([] {
      while (!isOver) PLRAnalytics::getTestProxyUrl([](const std::string&) { ++answers; });
    });
    while (answers == 0) std::this_thread::yield();
    std::exit(7);
  };
  EXPECT_EXIT(live(), ::testing::ExitedWithCode(7), "");
}

}  // namespace
}  // namespace pelorino
