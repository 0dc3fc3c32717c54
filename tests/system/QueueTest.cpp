#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <functional>
#include <vector>

#include "RealQueue.h"
#include "SystemTestSupport.h"

namespace pelorino {
namespace {

using namespace std::chrono_literals;

class QueueTest : public testing::Test {
 protected:
  std::shared_ptr<ExceptionOutlet> outlet_ = std::make_shared<ExceptionOutlet>();
  RealQueue queue_{"com.pelorino.test", outlet_, 20ms};
  std::vector<int> ran_;  // Of the queue; the test reads it after a wait.

  Block note(int number) {
    return [this, number] { ran_.push_back(number); };
  }
};

TEST_F(QueueTest, RunsBlocksOfManyThreadsOneAtATimeInOrderOfArrival) {
  constexpr int perThread = 5000;
  std::array<int, 4> inOrder{};
  std::vector<std::jthread> producers;
  for (int& mine : inOrder) {
    producers.emplace_back([this, &mine] {
      const auto check = [this, &mine](int i) {
        mine += i == mine ? 1 : 0;
        ran_.push_back(i);  // A race here is what two blocks at once would be.
      };
      for (int i = 0; i < perThread; ++i) queue_.add([check, i] { check(i); });
    });
  }
  producers.clear();
  queue_.waitUntilAllBlocksAreFinished();
  EXPECT_EQ(ran_.size(), inOrder.size() * perThread);
  for (const int one : inOrder) EXPECT_EQ(one, perThread);
}

TEST_F(QueueTest, NeverLosesABlockAddedAsItsThreadGoesAway) {
  RealQueue hasty("hasty", outlet_, 0ms);
  std::atomic<int> count{0};
  for (int i = 1; i <= 3000; ++i) {
    hasty.add([&] { ++count; });
    // Nothing comes behind the block that would bring the thread back.
    const auto end = std::chrono::steady_clock::now() + patience;
    while (count < i && std::chrono::steady_clock::now() < end) std::this_thread::yield();
    ASSERT_EQ(count, i);
    for (int spin = i % 200; spin > 0; --spin) static_cast<void>(hasty.isCurrent());
  }
}

TEST_F(QueueTest, PauseHoldsBackEverythingBehindTheRunningBlockAlsoWhenTheThreadHasGone) {
  // Added together, so that the thread takes them together.
  queue_.pause();
  queue_.add([this] {
    ran_.push_back(0);
    queue_.pause();
    queue_.pause();
  });
  queue_.add(note(1));
  queue_.resume();
  queue_.waitUntilAllBlocksAreFinished();  // Returns at the end of the running block.
  EXPECT_EQ(ran_, (std::vector{0}));
  queue_.add(note(2));
  EXPECT_TRUE(comesTrue([] { return threadsNamed("test") == 0; })) << "an idle thread goes away";
  EXPECT_EQ(ran_, (std::vector{0}));
  queue_.resume();
  queue_.waitUntilAllBlocksAreFinished();
  EXPECT_EQ(ran_, (std::vector{0, 1, 2}));
}

TEST_F(QueueTest, ABlockIsCurrentDoesNotWaitForItsQueueAndLetsGoBeforeTheNext) {
  auto onRelease = [this](void*) { ran_.push_back(queue_.isCurrent() ? 2 : -2); };
  queue_.add([this, held = std::shared_ptr<void>(nullptr, onRelease)] {
    queue_.add(note(3));
    queue_.waitUntilAllBlocksAreFinished();
    ran_.push_back(queue_.isCurrent() ? 1 : -1);
  });
  queue_.waitUntilAllBlocksAreFinished();  // For the block that the first one adds, too.
  EXPECT_EQ(ran_, (std::vector{1, 2, 3}));
  EXPECT_FALSE(queue_.isCurrent());
}

TEST_F(QueueTest, AWaitEndsAlsoWhenEachBlockAddsTheNext) {
  std::atomic<bool> goesOn{true};
  std::function<void()> next = [&] {
    if (goesOn) queue_.add(next);
  };
  queue_.add(next);
  queue_.waitUntilAllBlocksAreFinished();
  goesOn = false;
  queue_.waitUntilAllBlocksAreFinished();
}

TEST_F(QueueTest, ABlockMayDestroyItsQueueWhichDropsWhatWaits) {
  auto queue = std::make_unique<RealQueue>("short", outlet_);
  auto held = std::make_shared<int>();
  const std::weak_ptr<int> dropped = held;
  queue->pause();
  queue->add([&] { queue.reset(); });
  queue->add([held = std::move(held)] { ADD_FAILURE() << "of a queue that is gone"; });
  queue->resume();
  EXPECT_TRUE(comesTrue([&] { return dropped.expired(); }));
}

TEST_F(QueueTest, SignalsOfTheHostStayAwayAndFaultsDoNot) {
  sigset_t blocked;
  queue_.add([&] { pthread_sigmask(SIG_BLOCK, nullptr, &blocked); });
  queue_.waitUntilAllBlocksAreFinished();
  for (const int signal : {SIGTERM, SIGCHLD, SIGPIPE}) EXPECT_TRUE(sigismember(&blocked, signal));
  for (const int fault : {SIGSEGV, SIGABRT}) EXPECT_FALSE(sigismember(&blocked, fault));
  pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
  EXPECT_FALSE(sigismember(&blocked, SIGTERM)) << "the host's own thread hears them again";
}

}  // namespace
}  // namespace pelorino
