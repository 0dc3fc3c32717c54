#include <memory>
#include <optional>

#include "DeterministicTest.h"

namespace pelorino {
namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;

class DeterministicWait : public DeterministicTest {
 protected:
  /// Runs the work on a queue of its own; the virtual time that it took.
  milliseconds timeOf(const Block& work) {
    const auto queue = system.executor().makeQueue("timed");
    const milliseconds start = system.elapsed();
    queue->add(work);
    queue->waitUntilAllBlocksAreFinished();
    return system.elapsed() - start;
  }
  HttpResponse exchange(const HttpRequest& request) {
    HttpResponse response;
    timeOf([&] { response = system.http().perform(request); });
    return response;
  }
};

TEST_F(DeterministicWait, ASemaphoreTimesOutInVirtualTimeOrTakesOneSignal) {
  struct Case {
    const char* label;
    milliseconds signalAt;
    milliseconds timeout;
    bool want;
    milliseconds took;
  };
  const Case cases[] = {
      {"in time", 10s, 30s, true, 10s},
      {"a millisecond late", 30001ms, 30s, false, 30s},
      {"before the wait", 0ms, 0ms, true, 0ms},
      {"no time", 1ms, 0ms, false, 0ms},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    system.reset(seed);
    const auto semaphore = system.executor().makeSemaphore();
    const auto signal = system.executor().after(c.signalAt, [&] { semaphore->signal(); });
    if (c.signalAt == 0ms) system.runUntilIdle();
    bool got = !c.want;
    EXPECT_EQ(timeOf([&] { got = semaphore->wait(c.timeout); }), c.took);
    EXPECT_EQ(got, c.want);
  }
}

TEST_F(DeterministicWait, OneSignalWakesOneOfTwo) {
  const auto semaphore = system.executor().makeSemaphore();
  const auto a = system.executor().makeQueue("a");
  const auto b = system.executor().makeQueue("b");
  int woken = 0;
  for (SerialQueue* queue : {a.get(), b.get()}) {
    queue->add([&] { woken += semaphore->wait(1min) ? 1 : 0; });
  }
  system.runUntilIdle();
  semaphore->signal();
  system.runUntilIdle();
  EXPECT_EQ(woken, 1);
  system.advance(1min - 1ms);
  EXPECT_EQ(system.waits().size(), 1U);
  system.advance(1ms);
  EXPECT_EQ(system.waits().size(), 0U);
  EXPECT_EQ(woken, 1);
}

TEST_F(DeterministicWait, AnExchangeTakesItsLatencyAndAtMostItsTimeout) {
  struct Case {
    const char* label;
    milliseconds latency;
    milliseconds duration;
    std::optional<int> status;
  };
  const Case cases[] = {
      {"slow", 59s, 59s, 200},
      {"at the limit", 60s, 60s, 200},
      {"one past it", 60001ms, 60s, std::nullopt},
  };
  system.http().setHandler([](const HttpRequest&) {
    return HttpResponse{200, "yes", std::nullopt};
  });
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    system.http().setLatency(c.latency);
    HttpResponse response;
    const HttpRequest request{"GET", "http://backend/", {}, ""};
    EXPECT_EQ(timeOf([&] { response = system.http().perform(request); }), c.duration);
    EXPECT_EQ(response.status, c.status);
    EXPECT_EQ(response.error.has_value(), !c.status);
  }
  EXPECT_EQ(system.http().exchanges().size(), std::size(cases)) << "a lost answer had a request";
}

TEST_F(DeterministicWait, ExchangesFailAsTheRealOnesDo) {
  EXPECT_TRUE(exchange({"GET", "http://backend/", {}, ""}).error) << "nobody answers";

  system.http().setHandler([](const HttpRequest& request) {
    return HttpResponse{200, std::string(HttpExchange::maximumBody + request.body.size(), 'x'),
                        std::nullopt};
  });
  EXPECT_TRUE(exchange({"GET", "http://backend/", {}, ""}).body);
  const HttpResponse tooLong = exchange({"GET", "http://backend/", {}, "1"});
  EXPECT_EQ(tooLong.status, 200);
  EXPECT_FALSE(tooLong.body);
  EXPECT_TRUE(exchange({"GET", "not a url", {}, ""}).error);
  EXPECT_EQ(system.http().exchanges().size(), 3U) << "nothing is sent for a malformed URL";
}

}  // namespace
}  // namespace pelorino
