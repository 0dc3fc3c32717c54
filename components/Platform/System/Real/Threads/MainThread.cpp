#include "MainThread.h"

#include <algorithm>
#include <utility>

#include "QueueWorker.h"
#include "TimerSchedule.h"

namespace pelorino {
namespace {

using std::chrono::milliseconds;

/// Periods come from outside. The clock counts nanoseconds in 64 bits, 292 years; no process lives
/// for one.
constexpr milliseconds longestDelay = std::chrono::years{10};

milliseconds bounded(milliseconds time) {
  return std::clamp(time, milliseconds{0}, longestDelay);
}

class RealTimer final : public Timer {
 public:
  RealTimer(std::shared_ptr<QueueWorker> worker, std::shared_ptr<TimerSchedule::Entry> entry)
      : worker_(std::move(worker)), entry_(std::move(entry)) {}
  ~RealTimer() override { worker_->cancel(entry_); }
  RealTimer(const RealTimer&) = delete;
  RealTimer& operator=(const RealTimer&) = delete;

  void cancel() override { worker_->cancel(entry_); }

 private:
  const std::shared_ptr<QueueWorker> worker_;
  std::shared_ptr<TimerSchedule::Entry> entry_;  // Guarded by the worker's lock.
};

}  // namespace

MainThread::MainThread(std::shared_ptr<const ExceptionOutlet> outlet, milliseconds idle)
    : RealQueue("com.pelorino.main", std::move(outlet), idle) {}

std::unique_ptr<Timer> MainThread::startTimer(milliseconds delay, milliseconds period,
                                              milliseconds tolerance, Block block) {
  auto entry = std::make_shared<TimerSchedule::Entry>();
  entry->block = std::move(block);
  entry->due = std::chrono::steady_clock::now() + bounded(delay);
  entry->period = bounded(period);
  entry->tolerance = bounded(tolerance);
  auto timer = std::make_unique<RealTimer>(worker(), entry);
  worker()->schedule(std::move(entry));
  return timer;
}

}  // namespace pelorino
