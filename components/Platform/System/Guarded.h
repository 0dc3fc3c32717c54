#pragma once

#include <mutex>
#include <optional>
#include <utility>

#include "Mutex.h"

namespace pelorino {

/// A value that several threads read and write whole. The lock is held for one copy or one move,
/// never while foreign code runs.
template <class T>
class Guarded {
 public:
  Guarded() = default;
  explicit Guarded(T value) : value_(std::move(value)) {}

  [[nodiscard]] T get() const {
    const MutexLock lock(mutex_);
    return value_;
  }

  /// Absent if the lock is taken. For a forked child, where the thread that took it is gone.
  [[nodiscard]] std::optional<T> tryGet() const {
    if (!mutex_.tryLock()) return std::nullopt;
    const MutexLock lock(mutex_, std::adopt_lock);
    return value_;
  }

  void set(T value) {
    const MutexLock lock(mutex_);
    std::swap(value_, value);
    // The old value is destroyed with the argument, after the lock is released.
  }

  /// Runs `change` on the value under the lock; it must be short and must not call out.
  template <class Change>
  auto update(Change&& change) {
    const MutexLock lock(mutex_);
    return std::forward<Change>(change)(value_);
  }

 private:
  mutable Mutex mutex_;
  T value_ PLR_GUARDED_BY(mutex_){};
};

}  // namespace pelorino
