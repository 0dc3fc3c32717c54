#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

// What clang checks at each use of a lock (-Wthread-safety): which lock guards a member, and which
// one a function needs. Other compilers do not know these attributes.
#if defined(__clang__)
#define PLR_THREAD_SAFETY(word) __attribute__((word))
#else
#define PLR_THREAD_SAFETY(word)
#endif
#define PLR_GUARDED_BY(mutex) PLR_THREAD_SAFETY(guarded_by(mutex))
#define PLR_REQUIRES(mutex) PLR_THREAD_SAFETY(requires_capability(mutex))
#define PLR_ACQUIRE(...) PLR_THREAD_SAFETY(acquire_capability(__VA_ARGS__))
#define PLR_RELEASE(...) PLR_THREAD_SAFETY(release_capability(__VA_ARGS__))
/// For a function whose locking clang cannot follow; a comment there says why it is right.
#define PLR_LOCKING_UNCHECKED PLR_THREAD_SAFETY(no_thread_safety_analysis)

namespace pelorino {

/// A std::mutex that the compiler knows.
class PLR_THREAD_SAFETY(capability("mutex")) Mutex {
 public:
  constexpr Mutex() = default;

  [[nodiscard]] bool tryLock() PLR_THREAD_SAFETY(try_acquire_capability(true)) {
    return mutex_.try_lock();
  }

  /// Tells the check, inside a lambda, that the lock is held where the lambda is called.
  void assertHeld() const PLR_THREAD_SAFETY(assert_capability(this)) {}

 private:
  friend class MutexLock;
  std::mutex mutex_;
};

/// Holds a mutex while it exists, except between unlock() and lock().
class PLR_THREAD_SAFETY(scoped_lockable) MutexLock {
 public:
  explicit MutexLock(Mutex& mutex) PLR_ACQUIRE(mutex) : lock_(mutex.mutex_) {}
  /// Takes over what tryLock() has locked.
  MutexLock(Mutex& mutex, std::adopt_lock_t adopt) PLR_REQUIRES(mutex)
      : lock_(mutex.mutex_, adopt) {}
  ~MutexLock() PLR_RELEASE() {}  // NOLINT(modernize-use-equals-default): the word needs a body.
  MutexLock(const MutexLock&) = delete;
  MutexLock& operator=(const MutexLock&) = delete;

  void lock() PLR_ACQUIRE() { lock_.lock(); }
  void unlock() PLR_RELEASE() { lock_.unlock(); }

 private:
  friend class Condition;
  std::unique_lock<std::mutex> lock_;
};

/// A std::condition_variable over a MutexLock. May wake without a cause.
class Condition {
 public:
  void notifyOne() noexcept { condition_.notify_one(); }
  void notifyAll() noexcept { condition_.notify_all(); }

  template <class Period>
  std::cv_status waitFor(MutexLock& lock, Period time) {
    return condition_.wait_for(lock.lock_, time);
  }
  std::cv_status waitUntil(MutexLock& lock, std::chrono::steady_clock::time_point time) {
    return condition_.wait_until(lock.lock_, time);
  }

 private:
  std::condition_variable condition_;
};

}  // namespace pelorino
