#include "RealSemaphore.h"

#include <algorithm>

namespace pelorino {
namespace {

/// A wait without an end is written as the largest number, which the clock cannot be advanced by.
constexpr std::chrono::milliseconds longestWait = std::chrono::years{10};

}  // namespace

void RealSemaphore::signal() {
  // Under the lock: the waiter may destroy the semaphore as soon as it has the signal.
  const MutexLock lock(mutex_);
  ++signals_;
  signalled_.notifyOne();
}

bool RealSemaphore::wait(std::chrono::milliseconds timeout) {
  const auto end = std::chrono::steady_clock::now() + std::min(timeout, longestWait);
  MutexLock lock(mutex_);
  while (signals_ == 0) {
    if (signalled_.waitUntil(lock, end) == std::cv_status::timeout && signals_ == 0) return false;
  }
  --signals_;
  return true;
}

}  // namespace pelorino
