#include "RealSemaphore.h"

#include <algorithm>

namespace pelorino {
namespace {

/// A wait without an end is written as the largest number, which the clock cannot be advanced by.
constexpr std::chrono::milliseconds longestWait = std::chrono::years{10};

}  // namespace

void RealSemaphore::signal() {
  // Under the lock: the waiter may destroy the semaphore as soon as it has the signal.
  const std::lock_guard lock(mutex_);
  ++signals_;
  signalled_.notify_one();
}

bool RealSemaphore::wait(std::chrono::milliseconds timeout) {
  std::unique_lock lock(mutex_);
  const auto isSignalled = [this] { return signals_ > 0; };
  if (!signalled_.wait_for(lock, std::min(timeout, longestWait), isSignalled)) return false;
  --signals_;
  return true;
}

}  // namespace pelorino
