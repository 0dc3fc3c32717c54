#include <set>
#include <vector>

#include "DeterministicTest.h"

namespace pelorino {
namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;
using Times = std::vector<milliseconds>;

class DeterministicTime : public DeterministicTest {
 protected:
  Block note(Times& times) {
    return [this, &times] {
      EXPECT_TRUE(system.executor().mainQueue().isCurrent());
      times.push_back(system.elapsed());
    };
  }
};

TEST_F(DeterministicTime, TicksComeInPhaseOnTheMainQueueAndNotFasterThanTheMinimum) {
  Times slow, raised, once;
  const auto slowTimer = system.executor().repeat(2500ms, 0ms, note(slow));
  const auto raisedTimer = system.executor().repeat(0ms, 0ms, note(raised));
  const auto delayed = system.executor().after(2s, note(once));
  const auto semaphore = system.executor().makeSemaphore();
  system.advance(5s);
  system.executor().mainQueue().add([&] { EXPECT_FALSE(semaphore->wait(1500ms)); });
  system.advance(2500ms);
  EXPECT_EQ(slow, (Times{2500ms, 5s, 7500ms}));
  EXPECT_EQ(raised, (Times{1s, 2s, 3s, 4s, 5s, 6500ms, 7s})) << "missed ticks are one";
  EXPECT_EQ(once, (Times{2s}));
}

TEST_F(DeterministicTime, NoTickBeginsAfterTheTimerIsCancelledOrReleased) {
  Times ticks;
  std::unique_ptr<Timer> inTick = system.executor().repeat(1s, 0ms, [&] {
    inTick->cancel();
    note(ticks)();
  });
  std::unique_ptr<Timer> releasedInTick = system.executor().after(1s, [&] {
    const std::string kept = "what the block holds stays as long as it runs";
    releasedInTick = nullptr;
    note(ticks)();
  });
  const std::unique_ptr<Timer> cancelled = system.executor().after(1s, note(ticks));
  std::unique_ptr<Timer> released = system.executor().after(1s, note(ticks));
  const auto semaphore = system.executor().makeSemaphore();
  const auto other = system.executor().makeQueue("other");
  system.executor().mainQueue().add([&] { EXPECT_FALSE(semaphore->wait(1500ms)); });
  other->add([&] {
    EXPECT_FALSE(semaphore->wait(1200ms));
    cancelled->cancel();  // Both are due, and wait behind the block of the main queue.
    released = nullptr;
  });
  system.advance(10s);
  EXPECT_EQ(ticks, (Times{1500ms, 1500ms}));
  EXPECT_EQ(system.pendingTimers(), 0U);
}

TEST_F(DeterministicTime, ToleranceIsUsedOnlyWhenAskedForAndNeverExceeded) {
  Times ticks;
  system.executor().useTolerance(true);
  const auto timer = system.executor().repeat(10s, 5s, note(ticks));
  system.advance(205s);
  ASSERT_EQ(ticks.size(), 20U);
  std::set<milliseconds> lateness;
  for (std::size_t i = 0; i < 20; ++i) lateness.insert(ticks[i] - 10s * static_cast<int>(i + 1));
  EXPECT_GE(*lateness.begin(), 0ms);
  EXPECT_LE(*lateness.rbegin(), 5s);
  EXPECT_GT(lateness.size(), 10U);
}

TEST_F(DeterministicTime, AJumpOfTheDeviceClockMovesNoTimer) {
  Times ticks;
  const auto timer = system.executor().repeat(60s, 0ms, note(ticks));
  EXPECT_EQ(system.clock().milliseconds(), DeterministicSystem::startTime);
  system.advance(30s);
  system.setTime(-5);
  EXPECT_EQ(system.clock().milliseconds(), -5);
  system.advance(30s);
  EXPECT_EQ(ticks, (Times{60s}));
  EXPECT_EQ(system.clock().milliseconds(), 29'995);
}

}  // namespace
}  // namespace pelorino
