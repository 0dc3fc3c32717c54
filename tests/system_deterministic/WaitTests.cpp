#include <string>
#include <vector>

#include "DeterministicTest.h"

namespace pelorino {
namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;

class DeterministicWait : public DeterministicTest {
 protected:
  std::unique_ptr<SerialQueue> makeQueue(const std::string& label) {
    return system.executor().makeQueue(label);
  }

  /// What an exchange came to and how long it took, performed on a queue.
  struct Outcome {
    HttpResponse response;
    milliseconds duration;
  };
  Outcome exchange(const HttpRequest& request) {
    const auto queue = makeQueue("exchange");
    Outcome outcome{{}, system.elapsed()};
    queue->add([&] { outcome.response = system.http().perform(request); });
    queue->waitUntilAllBlocksAreFinished();
    outcome.duration = system.elapsed() - outcome.duration;
    return outcome;
  }
};

TEST_F(DeterministicWait, ASemaphoreTimesOutInVirtualTimeOrTakesOneSignal) {
  struct Case {
    const char* label;
    milliseconds signalAt;
    milliseconds timeout;
    bool want;
    milliseconds until;
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
    const auto queue = makeQueue("waiting");
    const auto signal = system.executor().after(c.signalAt, [&] { semaphore->signal(); });
    if (c.signalAt == 0ms) system.runUntilIdle();
    std::optional<bool> got;
    milliseconds until{-1};
    queue->add([&] {
      got = semaphore->wait(c.timeout);
      until = system.elapsed();
    });
    system.advance(1min);
    EXPECT_EQ(got, c.want);
    EXPECT_EQ(until, c.until);
  }
}

TEST_F(DeterministicWait, OneSignalWakesOneOfTwo) {
  const auto semaphore = system.executor().makeSemaphore();
  const auto a = makeQueue("a");
  const auto b = makeQueue("b");
  int woken = 0;
  for (SerialQueue* queue : {a.get(), b.get()}) {
    queue->add([&] { woken += semaphore->wait(1min) ? 1 : 0; });
  }
  system.runUntilIdle();
  semaphore->signal();
  system.runUntilIdle();
  EXPECT_EQ(woken, 1);
  system.advance(1min);
  EXPECT_EQ(woken, 1);
}

TEST_F(DeterministicWait, AdvanceStopsShortOfADeadlineAndALaterOneReachesIt) {
  const auto queue = makeQueue("queue");
  const auto semaphore = system.executor().makeSemaphore();
  bool ended = false;
  queue->add([&] { ended = !semaphore->wait(600s); });
  system.advance(600s - 1ms);
  EXPECT_FALSE(ended);
  system.advance(1ms);
  EXPECT_TRUE(ended);
}

TEST_F(DeterministicWait, ARetryEveryTenMinutesSucceedsWhenTheBackendIsBack) {
  const auto queue = makeQueue("network");
  const auto semaphore = system.executor().makeSemaphore();
  system.http().setHandler([&](const HttpRequest&) {
    return system.elapsed() < 1h ? HttpResponse{503, std::nullopt, std::nullopt}
                                 : HttpResponse{200, "done", std::nullopt};
  });
  system.http().setLatency(250ms);
  std::optional<std::string> body;
  queue->add([&] {
    while (!body) {
      body = system.http().perform({"POST", "http://backend/", {}, "{}"}).body;
      if (!body && semaphore->wait(600s)) return;
    }
  });
  system.advance(2h);
  EXPECT_EQ(body, "done");
  std::vector<milliseconds> begins;
  for (const auto& exchange : system.http().exchanges()) begins.push_back(exchange.begin);
  const std::vector<milliseconds> want{0ms,       600250ms,  1200500ms, 1800750ms,
                                       2401000ms, 3001250ms, 3601500ms};
  EXPECT_EQ(begins, want);
}

TEST_F(DeterministicWait, AnExchangeTakesItsLatencyAndAtMostItsTimeout) {
  struct Case {
    const char* label;
    milliseconds latency;
    milliseconds duration;
    std::optional<int> status;
  };
  const Case cases[] = {
      {"at once", 0ms, 0ms, 200},
      {"slow", 59s, 59s, 200},
      {"at the limit", 60s, 60s, 200},
      {"one past it", 60001ms, 60s, std::nullopt},
  };
  system.http().setHandler([](const HttpRequest&) {
    return HttpResponse{200, "yes", std::nullopt};
  });
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    system.http().setLatency([&](const HttpRequest&) { return c.latency; });
    const Outcome outcome = exchange({"GET", "http://backend/", {}, ""});
    EXPECT_EQ(outcome.response.status, c.status);
    EXPECT_EQ(outcome.response.error.has_value(), !c.status);
    EXPECT_EQ(outcome.duration, c.duration);
  }
  EXPECT_EQ(system.http().exchanges().size(), std::size(cases)) << "a lost answer had a request";
}

TEST_F(DeterministicWait, ExchangesFailAsTheRealOnesDo) {
  const Outcome refused = exchange({"GET", "http://backend/", {}, ""});
  EXPECT_FALSE(refused.response.status);
  EXPECT_TRUE(refused.response.error);

  system.http().setHandler([](const HttpRequest& request) {
    return HttpResponse{200, std::string(HttpExchange::maximumBody + request.body.size(), 'x'),
                        std::nullopt};
  });
  EXPECT_TRUE(exchange({"GET", "http://backend/", {}, ""}).response.body);
  const Outcome tooLong = exchange({"GET", "http://backend/", {}, "1"});
  EXPECT_EQ(tooLong.response.status, 200);
  EXPECT_FALSE(tooLong.response.body);

  EXPECT_TRUE(exchange({"GET", "not a url", {}, ""}).response.error);
  EXPECT_EQ(system.http().exchanges().size(), 3U) << "nothing is sent for a malformed URL";
}

TEST_F(DeterministicWait, ManyQueuesWaitAtOnceAndEndInAnyOrder) {
  constexpr int count = 8;
  std::vector<std::unique_ptr<SerialQueue>> queues;
  std::vector<std::unique_ptr<Semaphore>> semaphores;
  for (int i = 0; i < count; ++i) {
    queues.push_back(makeQueue(std::to_string(i)));
    semaphores.push_back(system.executor().makeSemaphore());
  }
  std::string ended;
  for (std::size_t i = 0; i < count; ++i) {
    queues[i]->add([&, i] {
      EXPECT_TRUE(semaphores[i]->wait(1h));
      EXPECT_TRUE(queues[i]->isCurrent());
      ended += std::to_string(i);
    });
  }
  system.runUntilIdle();
  EXPECT_EQ(system.waits().size(), std::size_t{count});
  for (const std::size_t i : {3U, 0U, 7U, 5U, 1U, 6U, 2U, 4U}) {
    semaphores[i]->signal();
    system.runUntilIdle();
  }
  EXPECT_EQ(ended, "30751624");
  EXPECT_EQ(system.elapsed(), 0ms);
}

TEST_F(DeterministicWait, AWaitFromTheTestThrowsWhatCannotEnd) {
  const auto semaphore = system.executor().makeSemaphore();
  EXPECT_THROW(static_cast<void>(semaphore->wait(milliseconds::max())), std::logic_error);
  EXPECT_FALSE(semaphore->wait(5s));
  EXPECT_EQ(system.elapsed(), 5s);
}

}  // namespace
}  // namespace pelorino
