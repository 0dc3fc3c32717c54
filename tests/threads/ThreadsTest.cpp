#include <pelorino/PLREventsRouter.h>
#include <pthread.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>

#include "AnyOperation.h"
#include "BackendProcess.h"

namespace pelorino {
namespace {

using namespace std::chrono_literals;

/// PELORINO_THREADS_SECONDS makes it longer.
std::chrono::seconds duration() {
  const char* told = std::getenv("PELORINO_THREADS_SECONDS");
  return std::chrono::seconds(told ? std::atoi(told) : 1);
}

/// With a backend that answers at once and wants to hear of everything soon.
class Threads : public AnyOperationTest {
 protected:
  Threads() {
    backend_.answer(
        "/analytics/config",
        boost::json::parse(R"({"timeForRequest":1000,"countForRequest":3,"eventParamsCount":20,)"
                           R"("sessionTimeout":1000,"serverTime":1,"aliveTimeout":1000,)"
                           R"("userCounting":true,"sbsBundles":["product"],"sbsConfigVersion":1})")
            .as_object());
    PLRAnalytics::setTestProxyUrl(backend_.url());
  }

  blackbox::BackendProcess backend_{file_.support() + ".backend"};
};

TEST_F(Threads, MayAllCallAtOnceWhileTheLibraryComesAndGoes) {
  PLRAnalytics::initialize("key");
  int restarts = 0;
  const auto isAllSeen = [&] {  // A slow machine takes its time.
    return restarts > 0 && !backend_.received("/analytics/identification").empty() &&
           !backend_.names().empty();
  };
  {
    const Callers callers(16);
    const auto over = std::chrono::steady_clock::now() + duration();
    const auto lasts = [&](auto more) { return std::chrono::steady_clock::now() < over + more; };
    for (int rounds = 0; rounds < 8 || lasts(0s) || (lasts(1min) && !isAllSeen()); ++rounds) {
      PLREngineWrapper::destroySDK();
      // Before the end has come this start is refused, and the next one is that of another thread.
      const bool hasEnded = rounds % 2 == 1 && !drain();
      PLRAnalytics::initialize("key");
      restarts += static_cast<int>(drain() && hasEnded);
      for (int lives = 0; lives < rounds % 4; ++lives) drain();  // Answers queue behind calls.
    }
  }
  end();
  EXPECT_FALSE(PLREventsRouter::isAnalyticsInited());
  EXPECT_TRUE(isAllSeen()) << restarts;
  EXPECT_EQ(file_.run("SELECT configuration LIKE '%\"countForRequest\":3%' FROM projects"), "1");
  EXPECT_EQ(backend_.findings(), std::vector<std::string>());
}

TEST_F(Threads, MayBeCancelledInACall) {
  PLRAnalytics::initialize("key");
  std::promise<void> promise;
  PLRAnalytics::getSDKVersion(
      [hold = promise.get_future().share()](const std::string&) { hold.wait(); });
  static std::atomic<bool> isCalling{false};
  pthread_t thread{};
  const auto body = [](void*) -> void* {
    isCalling = true;
    PLRHost::willTerminate();
    pthread_testcancel();
    return nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, nullptr, body, nullptr), 0);
  while (!isCalling) std::this_thread::yield();
  std::this_thread::sleep_for(50ms);
  pthread_cancel(thread);
  promise.set_value();
  void* result = nullptr;
  ASSERT_EQ(pthread_join(thread, &result), 0);
  EXPECT_EQ(result, PTHREAD_CANCELED);
  end();
}

class Exit : public AnyOperationTest {};

TEST_F(Exit, LetsNoHandlerSeeThatTheHostIsGone) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto live = [] {
    static struct State {
      std::atomic<bool> isAlive{true};
      ~State() {
        isAlive = false;
        std::this_thread::sleep_for(100ms);
      }
    } state;
    PLRAnalytics::initialize("key");
    PLRAnalytics::getSDKVersion([](const std::string&) {
      if (!state.isAlive) ::_exit(8);
    });
    std::exit(7);
  };
  EXPECT_EXIT(live(), ::testing::ExitedWithCode(7), "");
}

TEST_F(Exit, GoesOnWhileThreadsOfTheHostAskThatItJoins) {
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
