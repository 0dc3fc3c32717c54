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

TEST_F(Deterministic, AnExceptionEndsItsBlockAlone) {
  const auto queue = executor.makeQueue("queue");
  std::string run;
  executor.setExceptionHandler(
      [&](std::string_view label, std::string_view what) { run.append(label).append(what); });
  queue->add([] { throw std::runtime_error(": boom"); });
  queue->add([&] { run += " 2"; });
  system.runUntilIdle();
  EXPECT_EQ(run, "queue: boom 2");
  executor.setExceptionHandler({});
}

TEST_F(Deterministic, ToleranceIsUsedAndNeverExceeded) {
  executor.useTolerance(true);
  int ticks = 0;
  std::set<milliseconds> lateness;
  const auto timer =
      executor.repeat(10s, 5s, [&] { lateness.insert(system.elapsed() - 10s * ++ticks); });
  system.advance(205s);
  ASSERT_EQ(ticks, 20);
  EXPECT_GE(*lateness.begin(), 0ms);
  EXPECT_LE(*lateness.rbegin(), 5s);
  EXPECT_GT(lateness.size(), 10U);
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
    const milliseconds start = system.elapsed();
    const HttpResponse response = system.http().perform({"GET", "http://backend/", {}, nullptr});
    EXPECT_EQ(system.elapsed() - start, c.duration);
    EXPECT_EQ(response.status, c.status);
    EXPECT_EQ(response.error.has_value(), !c.status);
  }
  EXPECT_EQ(system.http().exchanges().size(), std::size(cases)) << "a lost answer had a request";
}

}  // namespace
}  // namespace pelorino
