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
  int rounds = 0;
  {
    const Callers callers(16);
    const auto over = std::chrono::steady_clock::now() + duration();
    for (; rounds < 3 || std::chrono::steady_clock::now() < over; ++rounds) {
      PLREngineWrapper::destroySDK();
      PLRAnalytics::initialize("key");
      drain();
    }
  }
  end();
  EXPECT_FALSE(PLREventsRouter::isAnalyticsInited());
  RecordProperty("rounds", rounds);
}

}  // namespace
}  // namespace pelorino
