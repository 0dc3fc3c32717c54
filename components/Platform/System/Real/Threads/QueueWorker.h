#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>

#include "Block.h"
#include "ExceptionOutlet.h"
#include "Mutex.h"
#include "TimerSchedule.h"

namespace pelorino {

/// The blocks of one queue and the thread that runs them. The queue and its thread share it, so
/// either may end first.
///
/// The thread starts when there is something to run, and goes away after `idleTime` without. When
/// the system gives no thread, blocks stay where they are until the next call that adds one.
///
/// Threads: all operations from any thread. In a forked child they do nothing.
class QueueWorker final : public std::enable_shared_from_this<QueueWorker> {
 public:
  QueueWorker(std::string label, std::shared_ptr<const ExceptionOutlet> outlet,
              std::chrono::milliseconds idleTime);
  QueueWorker(const QueueWorker&) = delete;
  QueueWorker& operator=(const QueueWorker&) = delete;

  void add(Block block);
  void pause();
  void resume();
  void waitUntilAllBlocksAreFinished();

  /// Drops what waits; a running block ends, and the thread with it. Nothing runs afterwards.
  /// Called once.
  void close() noexcept PLR_LOCKING_UNCHECKED;

  /// When the timer is due, its block runs as if added at that moment.
  void schedule(std::shared_ptr<TimerSchedule::Entry> entry);
  /// `entry` is null afterwards, and its block is destroyed here unless its turn has come. Callable
  /// twice on one pointer, also at once: the lock of this object guards it.
  void cancel(std::shared_ptr<TimerSchedule::Entry>& entry);

  /// The worker whose block runs on this thread; null on all other threads.
  [[nodiscard]] static const QueueWorker* current();

 private:
  void runUntilIdle();
  bool takeBatch();
  void takeDueTimers() PLR_REQUIRES(mutex_);
  bool sleep(MutexLock& lock) PLR_REQUIRES(mutex_);
  void runBatch();
  bool beginBlock();
  void endBlock();
  void setHeld() PLR_REQUIRES(mutex_);
  void ensureRunning(MutexLock& lock) PLR_REQUIRES(mutex_) PLR_LOCKING_UNCHECKED;
  [[nodiscard]] bool startThread() noexcept;
  void wakeWaiters();
  [[nodiscard]] bool hasWork() const PLR_REQUIRES(mutex_);
  [[nodiscard]] bool isRunning() const;
  [[nodiscard]] std::uint64_t finished() const;

  const std::string label_;
  const std::shared_ptr<const ExceptionOutlet> outlet_;
  const std::chrono::milliseconds idleTime_;

  Mutex mutex_;
  Condition work_;
  Condition progress_;
  std::deque<Block> waiting_ PLR_GUARDED_BY(mutex_);
  TimerSchedule timers_ PLR_GUARDED_BY(mutex_);
  std::uint64_t added_ PLR_GUARDED_BY(mutex_) = 0;
  bool hasThread_ PLR_GUARDED_BY(mutex_) = false;
  bool isAsleep_ PLR_GUARDED_BY(mutex_) = false;
  bool isPaused_ PLR_GUARDED_BY(mutex_) = false;
  bool isClosed_ PLR_GUARDED_BY(mutex_) = false;

  // Of the thread that runs; guarded by mutex_ while there is none.
  std::deque<Block> batch_;

  // Read without the lock between two blocks.
  std::atomic<bool> isHeld_{false};      ///< Paused or closed.
  std::atomic<std::uint64_t> steps_{0};  ///< Beginnings and ends of blocks: odd while one runs.
  std::atomic<std::uint32_t> waiters_{0};
};

}  // namespace pelorino
