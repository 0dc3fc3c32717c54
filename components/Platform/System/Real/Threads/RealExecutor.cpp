#include "RealExecutor.h"

#include <algorithm>
#include <utility>

namespace pelorino {

using std::chrono::milliseconds;

namespace {

/// A wait without an end is written as the largest number, which the clock cannot be advanced by.
constexpr milliseconds longestWait = std::chrono::years{10};

}  // namespace

void RealSemaphore::signal() {
  // Under the lock: the waiter may destroy the semaphore as soon as it has the signal.
  const MutexLock lock(mutex_);
  ++signals_;
  signalled_.notifyOne();
}

bool RealSemaphore::wait(milliseconds timeout) {
  const auto end = std::chrono::steady_clock::now() + std::min(timeout, longestWait);
  MutexLock lock(mutex_);
  while (signals_ == 0) {
    if (signalled_.waitUntil(lock, end) == std::cv_status::timeout && signals_ == 0) return false;
  }
  --signals_;
  return true;
}

std::unique_ptr<SerialQueue> RealExecutor::makeQueue(std::string label) {
  return std::make_unique<RealQueue>(std::move(label), outlet_);
}

std::unique_ptr<Semaphore> RealExecutor::makeSemaphore() {
  return std::make_unique<RealSemaphore>();
}

std::unique_ptr<Timer> RealExecutor::repeat(milliseconds period, milliseconds tolerance,
                                            Block tick) {
  const milliseconds raised = std::max(period, minimumTimerPeriod);
  return main_.startTimer(raised, raised, tolerance, std::move(tick));
}

std::unique_ptr<Timer> RealExecutor::after(milliseconds delay, Block block) {
  return main_.startTimer(delay, milliseconds{0}, milliseconds{0}, std::move(block));
}

void RealExecutor::setExceptionHandler(ExceptionHandler handler) {
  outlet_->setHandler(std::move(handler));
}

}  // namespace pelorino
