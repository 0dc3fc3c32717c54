#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "DeterministicTest.h"

namespace pelorino {
namespace {

using namespace std::chrono_literals;

class DeterministicQueue : public DeterministicTest {
 protected:
  std::unique_ptr<SerialQueue> makeQueue(const char* label) {
    return system.executor().makeQueue(label);
  }

  /// Three queues of four blocks each: the order in which a seed runs them.
  std::string order(std::uint64_t withSeed) {
    system.reset(withSeed);
    std::string run;
    std::vector<std::unique_ptr<SerialQueue>> queues;
    for (char name = 'a'; name <= 'c'; ++name) {
      queues.push_back(system.executor().makeQueue(std::string(1, name)));
      for (int i = 0; i < 4; ++i) {
        queues.back()->add([&run, name, i] { run += {name, static_cast<char>('0' + i)}; });
      }
    }
    EXPECT_EQ(run, "") << "add() ran a block";
    system.runUntilIdle();
    return run;
  }
};

TEST_F(DeterministicQueue, ASeedChoosesAmongQueuesAndNeverWithinOne) {
  std::set<std::string> orders;
  for (std::uint64_t s = 1; s <= 20; ++s) {
    const std::string first = order(s);
    orders.insert(first);
    EXPECT_EQ(order(s), first) << "the same seed ran otherwise";
    for (const char name : {'a', 'b', 'c'}) {
      std::string digits;
      for (std::size_t i = 0; i < first.size(); i += 2) {
        if (first[i] == name) digits += first[i + 1];
      }
      EXPECT_EQ(digits, "0123") << s;
    }
  }
  EXPECT_GT(orders.size(), 15U) << "seeds hardly differ";
}

TEST_F(DeterministicQueue, PauseAndExceptionsEndTheRunningBlockAlone) {
  const auto queue = makeQueue("queue");
  std::string run;
  system.executor().setExceptionHandler(
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
  system.executor().setExceptionHandler({});
}

TEST_F(DeterministicQueue, AWaitFromTheTestCoversTheBlocksAddedBeforeItAndTakesTheirTime) {
  const auto queue = makeQueue("queue");
  const auto semaphore = system.executor().makeSemaphore();
  std::string run;
  queue->add([&] {
    EXPECT_FALSE(semaphore->wait(30s));
    run += "1";
    queue->add([&] {
      EXPECT_FALSE(semaphore->wait(30s));
      run += "3";
    });
  });
  queue->add([&] { run += "2"; });
  queue->waitUntilAllBlocksAreFinished();
  EXPECT_EQ(run, "12");
  EXPECT_EQ(system.elapsed(), 30s);
  system.advance(30s);
  EXPECT_EQ(run, "123");
}

TEST_F(DeterministicQueue, AWaitFromItsOwnBlockReturnsAtOnceAlsoWhenAnotherQueueRanMeanwhile) {
  const auto own = makeQueue("own");
  const auto other = makeQueue("other");
  std::string run;
  own->add([&] {
    EXPECT_TRUE(own->isCurrent());
    EXPECT_FALSE(other->isCurrent());
    other->add([&] {
      EXPECT_TRUE(other->isCurrent());
      EXPECT_FALSE(own->isCurrent());
      run += "other ";
    });
    other->waitUntilAllBlocksAreFinished();
    EXPECT_TRUE(own->isCurrent());
    own->add([&] { run += "later"; });
    own->waitUntilAllBlocksAreFinished();
    run += "own ";
  });
  system.runUntilIdle();
  EXPECT_EQ(run, "other own later");
  EXPECT_FALSE(own->isCurrent());
}

}  // namespace
}  // namespace pelorino
