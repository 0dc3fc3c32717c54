#include <algorithm>
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
  std::vector<std::string> orders;
  for (std::uint64_t s = 1; s <= 20; ++s) {
    SCOPED_TRACE(s);
    orders.push_back(order(s));
    EXPECT_EQ(order(s), orders.back()) << "the same seed ran otherwise";
    for (char name = 'a'; name <= 'c'; ++name) {
      std::string digits;
      for (std::size_t i = 0; i < orders.back().size(); i += 2) {
        if (orders.back()[i] == name) digits += orders.back()[i + 1];
      }
      EXPECT_EQ(digits, "0123");
    }
  }
  std::sort(orders.begin(), orders.end());
  const auto distinct = std::unique(orders.begin(), orders.end()) - orders.begin();
  EXPECT_GT(distinct, 15) << "seeds hardly differ";
}

TEST_F(DeterministicQueue, WhatAnEarlierTestUsedFirstDoesNotChangeTheOrder) {
  const auto a = makeQueue("a");
  const auto b = makeQueue("b");
  const auto run = [&](SerialQueue& first, SerialQueue& second) {
    system.reset(seed);
    std::string order;
    for (int i = 0; i < 20; ++i) {
      first.add([&] { order += '1'; });
      second.add([&] { order += '2'; });
    }
    system.runUntilIdle();
    return order;
  };
  EXPECT_EQ(run(*a, *b), run(*b, *a));
}

TEST_F(DeterministicQueue, PauseLetsTheRunningBlockEndAndHoldsTheNext) {
  const auto queue = makeQueue("queue");
  std::string run;
  queue->add([&] {
    queue->pause();
    queue->pause();
    run += "1";
  });
  queue->add([&] { run += "2"; });
  system.advance(1h);
  EXPECT_EQ(run, "1");
  queue->waitUntilAllBlocksAreFinished();  // Paused: it must not wait for the second.
  EXPECT_EQ(run, "1");
  queue->resume();
  system.runUntilIdle();
  EXPECT_EQ(run, "12");
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

TEST_F(DeterministicQueue, AnExceptionEndsItsBlockAlone) {
  const auto queue = makeQueue("queue");
  std::string run;
  queue->add([] { throw std::runtime_error("boom"); });
  queue->add([&] { run += "next "; });
  EXPECT_THROW(system.runUntilIdle(), std::runtime_error) << "without a handler the test hears it";

  system.executor().setExceptionHandler(
      [&](std::string_view label, std::string_view what) { run.append(label).append(what); });
  queue->add([] { throw std::runtime_error(": boom"); });
  system.runUntilIdle();
  system.executor().setExceptionHandler({});
  EXPECT_EQ(run, "next queue: boom");
}

TEST_F(DeterministicQueue, MistakesOfATestAreErrorsAndNotHangs) {
  const auto queue = makeQueue("queue");
  std::function<void()> again = [&] { queue->add(again); };
  queue->add(again);
  system.setMaximumSteps(1000);
  EXPECT_THROW(system.runUntilIdle(), std::logic_error) << "work without end";
  system.reset();

  queue->add([&] { system.advance(1s); });
  EXPECT_THROW(system.runUntilIdle(), std::logic_error) << "advance() from a block";
}

TEST_F(DeterministicQueue, ResetEmptiesAndResumesQueuesAndTellsOfWaitsThatWereLeft) {
  const auto stuck = makeQueue("stuck");
  const auto paused = makeQueue("paused");
  const auto semaphore = system.executor().makeSemaphore();
  std::string run;
  stuck->add([&] { run += semaphore->wait(1h) ? "signalled" : "ended "; });
  stuck->add([&] { run += "dropped"; });
  paused->pause();
  system.runUntilIdle();
  EXPECT_EQ(system.waits().size(), 1U);
  EXPECT_THROW(system.reset(), std::logic_error);
  EXPECT_EQ(run, "ended ");

  system.reset();
  paused->add([&] { run += "resumed"; });
  system.runUntilIdle();
  EXPECT_EQ(run, "ended resumed");
}

TEST_F(DeterministicQueue, QueuesThatWaitForEachOtherAreReportedAsWaiting) {
  const auto first = makeQueue("first");
  const auto second = makeQueue("second");
  first->add([&] { second->waitUntilAllBlocksAreFinished(); });
  second->add([&] { first->waitUntilAllBlocksAreFinished(); });
  EXPECT_THROW(first->waitUntilAllBlocksAreFinished(), std::logic_error);
  EXPECT_EQ(system.abandon().size(), 2U);
}

}  // namespace
}  // namespace pelorino
