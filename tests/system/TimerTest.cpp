#include <gtest/gtest.h>

#include "MainThread.h"
#include "RealExecutor.h"
#include "SystemTestSupport.h"
#include "TimerSchedule.h"

namespace pelorino {
namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;

/// A schedule under test time, which counts from zero.
class Timetable {
 public:
  using Entry = TimerSchedule::Entry;

  std::shared_ptr<Entry> set(char name, milliseconds due, milliseconds period,
                             milliseconds tolerance) {
    auto entry = std::make_shared<Entry>();
    entry->block = [this, name] { ticks_ += name; };
    entry->due = start_ + due;
    entry->period = period;
    entry->tolerance = tolerance;
    schedule_.add(entry);
    return entry;
  }

  /// The names of the timers that tick at the next wake-up, after the time of it.
  std::string nextWakeUp() {
    const auto at = std::chrono::duration_cast<milliseconds>(*schedule_.nextWakeUp() - start_);
    return std::to_string(at.count()) + " " + ticksAt(at);
  }

  std::string ticksAt(milliseconds time) {
    std::deque<Block> blocks;
    schedule_.takeDue(start_ + time, blocks);
    ticks_.clear();
    for (const Block& block : blocks) block();
    return ticks_;
  }

 private:
  const TimerSchedule::TimePoint start_{};
  TimerSchedule schedule_;
  std::string ticks_;
};

TEST(TimerSchedule, NeighbouringTicksShareAWakeUpAndNoneIsLaterThanItsTolerance) {
  Timetable table;
  table.set('a', 1000ms, 1000ms, 100ms);
  table.set('b', 1050ms, 2000ms, 200ms);
  table.set('o', 1101ms, 0ms, 0ms);
  EXPECT_EQ(table.nextWakeUp(), "1100 ab");
  EXPECT_EQ(table.nextWakeUp(), "1101 o");
  EXPECT_EQ(table.nextWakeUp(), "2100 a");
  EXPECT_EQ(table.nextWakeUp(), "3100 ab");
}

TEST(TimerSchedule, StaysInPhaseMakesOneTickOfThoseItMissedAndHonoursACancel) {
  Timetable table;
  const auto entry = table.set('a', 1000ms, 1000ms, 0ms);
  EXPECT_EQ(table.ticksAt(999ms), "");
  EXPECT_EQ(table.ticksAt(1900ms), "a");
  EXPECT_EQ(table.ticksAt(1999ms), "");
  EXPECT_EQ(table.ticksAt(5500ms), "a");
  EXPECT_EQ(table.nextWakeUp(), "6000 a");
  entry->isCancelled = true;
  EXPECT_EQ(table.ticksAt(7000ms), "");
}

TEST(MainThread, ATimerMayCancelItselfAndAnEarlierOneOvertakesALaterOne) {
  MainThread main(std::make_shared<ExceptionOutlet>());
  const auto late = main.startTimer(1h, 1h, 0ms, [] {});
  RealSemaphore isSet, ticked;
  std::unique_ptr<Timer> timer = main.startTimer(1ms, 1ms, 0ms, [&] {
    EXPECT_TRUE(isSet.wait(patience));
    EXPECT_TRUE(main.isCurrent());
    timer->cancel();
    timer->cancel();
    ticked.signal();
  });
  isSet.signal();
  EXPECT_TRUE(ticked.wait(patience));
  EXPECT_FALSE(ticked.wait(20ms)) << "cancelled";
}

TEST(MainThread, ReleasingTheLastHandleReleasesTheBlockAndTheThread) {
  ASSERT_TRUE(comesTrue([] { return threadsNamed("main") == 0; }));  // Of the tests before.
  MainThread main(std::make_shared<ExceptionOutlet>(), 10ms);
  auto held = std::make_shared<int>();
  const std::weak_ptr<int> released = held;
  auto timer = main.startTimer(milliseconds::max(), 0ms, 0ms, [held = std::move(held)] {});
  std::this_thread::sleep_for(30ms);
  EXPECT_EQ(threadsNamed("main"), 1);
  timer.reset();
  EXPECT_TRUE(released.expired());
  EXPECT_TRUE(comesTrue([] { return threadsNamed("main") == 0; }));
}

}  // namespace
}  // namespace pelorino
