#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "DeterministicTest.h"

namespace pelorino {
namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;
using Times = std::vector<milliseconds>;

class Deterministic : public DeterministicTest {
 protected:
  /// Three queues of four blocks each: the order in which a seed runs them.
  std::string order(std::uint64_t withSeed) {
    system.reset(withSeed);
    std::string run;
    std::vector<std::unique_ptr<SerialQueue>> queues;
    for (char name = 'a'; name <= 'c'; ++name) {
      queues.push_back(executor.makeQueue(std::string(1, name)));
      for (int i = 0; i < 4; ++i) {
        queues.back()->add([&run, name, i] { run += {name, static_cast<char>('0' + i)}; });
      }
    }
    EXPECT_EQ(run, "") << "add() ran a block";
    system.runUntilIdle();
    return run;
  }
  Block note(Times& times) {
    return [this, &times] {
      EXPECT_TRUE(executor.mainQueue().isCurrent());
      times.push_back(system.elapsed());
    };
  }
  /// Runs the work on a queue of its own; the virtual time that it took.
  milliseconds timeOf(const Block& work) {
    const auto queue = executor.makeQueue("timed");
    const milliseconds start = system.elapsed();
    queue->add(work);
    queue->waitUntilAllBlocksAreFinished();
    return system.elapsed() - start;
  }

  DeterministicExecutor& executor = system.executor();
};

TEST_F(Deterministic, ASeedChoosesAmongQueuesAndNeverWithinOne) {
  std::set<std::string> orders;
  for (std::uint64_t s = 1; s <= 20; ++s) {
    const std::string first = order(s);
    orders.insert(first);
    EXPECT_EQ(order(s), first) << "the same seed ran otherwise";
    for (const char* name : {"a", "b", "c"}) {
      for (int i = 1; i < 4; ++i) {
        EXPECT_LT(first.find(name + std::to_string(i - 1)), first.find(name + std::to_string(i)));
      }
    }
  }
  EXPECT_GT(orders.size(), 15U) << "seeds hardly differ";
}

TEST_F(Deterministic, PauseAndExceptionsEndTheRunningBlockAlone) {
  const auto queue = executor.makeQueue("queue");
  std::string run;
  executor.setExceptionHandler(
      [&](std::string_view label, std::string_view what) { run.append(label).append(what); });
  queue->add([&] {
    queue->pause();
    run += "1 ";
    throw std::runtime_error(": boom");
  });
  queue->add([&] { run += " 2"; });
  queue->waitUntilAllBlocksAreFinished();  // Paused: it must not wait for the second.
  EXPECT_EQ(run, "1 queue: boom");
  queue->resume();
  system.runUntilIdle();
  EXPECT_EQ(run, "1 queue: boom 2");
  executor.setExceptionHandler({});
}

TEST_F(Deterministic, TicksComeInPhaseOnTheMainQueueAndNotFasterThanTheMinimum) {
  Times slow, raised, once;
  const auto slowTimer = executor.repeat(2500ms, 0ms, note(slow));
  const auto raisedTimer = executor.repeat(0ms, 0ms, note(raised));
  const auto delayed = executor.after(2s, note(once));
  const auto semaphore = executor.makeSemaphore();
  system.advance(5s);
  executor.mainQueue().add([&] { EXPECT_FALSE(semaphore->wait(1500ms)); });
  system.advance(2500ms);
  EXPECT_EQ(slow, (Times{2500ms, 5s, 7500ms}));
  EXPECT_EQ(raised, (Times{1s, 2s, 3s, 4s, 5s, 6500ms, 7s})) << "missed ticks are one";
  EXPECT_EQ(once, (Times{2s}));
}

TEST_F(Deterministic, NoTickBeginsAfterTheTimerIsCancelledOrReleased) {
  Times ticks;
  std::unique_ptr<Timer> inTick = executor.repeat(1s, 0ms, [&] {
    inTick->cancel();
    note(ticks)();
  });
  const std::unique_ptr<Timer> cancelled = executor.after(1s, note(ticks));
  std::unique_ptr<Timer> released = executor.after(1s, note(ticks));
  const auto semaphore = executor.makeSemaphore();
  const auto other = executor.makeQueue("other");
  executor.mainQueue().add([&] { EXPECT_FALSE(semaphore->wait(1500ms)); });
  other->add([&] {
    EXPECT_FALSE(semaphore->wait(1200ms));
    cancelled->cancel();  // Both are due, and wait behind the block of the main queue.
    released = nullptr;
  });
  system.advance(10s);
  EXPECT_EQ(ticks, (Times{1500ms}));
  EXPECT_EQ(system.pendingTimers(), 0U);
}

TEST_F(Deterministic, ToleranceIsUsedOnlyWhenAskedForAndNeverExceeded) {
  Times ticks;
  executor.useTolerance(true);
  const auto timer = executor.repeat(10s, 5s, note(ticks));
  system.advance(205s);
  ASSERT_EQ(ticks.size(), 20U);
  std::set<milliseconds> lateness;
  for (std::size_t i = 0; i < 20; ++i) lateness.insert(ticks[i] - 10s * static_cast<int>(i + 1));
  EXPECT_GE(*lateness.begin(), 0ms);
  EXPECT_LE(*lateness.rbegin(), 5s);
  EXPECT_GT(lateness.size(), 10U);
}

TEST_F(Deterministic, ASemaphoreTimesOutInVirtualTimeOrTakesOneSignal) {
  const struct {
    const char* label;
    milliseconds signalAt;
    milliseconds timeout;
    bool want;
    milliseconds took;
  } cases[] = {
      {"in time", 10s, 30s, true, 10s},
      {"a millisecond late", 30001ms, 30s, false, 30s},
      {"before the wait", 0ms, 0ms, true, 0ms},
      {"no time", 1ms, 0ms, false, 0ms},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.label);
    system.reset(seed);
    const auto semaphore = executor.makeSemaphore();
    const auto signal = executor.after(c.signalAt, [&] { semaphore->signal(); });
    if (c.signalAt == 0ms) system.runUntilIdle();
    bool got = !c.want;
    EXPECT_EQ(timeOf([&] { got = semaphore->wait(c.timeout); }), c.took);
    EXPECT_EQ(got, c.want);
  }
}

TEST_F(Deterministic, OneSignalWakesOneOfTwo) {
  const auto semaphore = executor.makeSemaphore();
  const auto a = executor.makeQueue("a"), b = executor.makeQueue("b");
  int woken = 0;
  for (SerialQueue* queue : {a.get(), b.get()}) {
    queue->add([&] { woken += semaphore->wait(1min) ? 1 : 0; });
  }
  const auto signal = executor.after(1s, [&] { semaphore->signal(); });
  system.advance(1min - 1ms);
  EXPECT_EQ(system.waits().size(), 1U);
  system.advance(1ms);
  EXPECT_EQ(woken, 1);
}

TEST_F(Deterministic, AnExchangeTakesItsLatencyAndAtMostItsTimeout) {
  const struct {
    milliseconds latency;
    milliseconds duration;
    std::optional<int> status;
  } cases[] = {{59s, 59s, 200}, {60s, 60s, 200}, {60001ms, 60s, {}}};
  system.http().setHandler([](const HttpRequest&) {
    return HttpResponse{200, "yes", std::nullopt};
  });
  for (const auto& c : cases) {
    SCOPED_TRACE(c.latency.count());
    system.http().setLatency(c.latency);
    HttpResponse response;
    const HttpRequest request{"GET", "http://backend/", {}, nullptr};
    EXPECT_EQ(timeOf([&] { response = system.http().perform(request); }), c.duration);
    EXPECT_EQ(response.status, c.status);
    EXPECT_EQ(response.error.has_value(), !c.status);
  }
  EXPECT_EQ(system.http().exchanges().size(), std::size(cases)) << "a lost answer had a request";
}

}  // namespace
}  // namespace pelorino
