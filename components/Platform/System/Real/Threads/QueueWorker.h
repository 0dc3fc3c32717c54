#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <string>

#include "Block.h"
#include "ExceptionOutlet.h"
#include "TimerSchedule.h"

namespace pelorino {

/// The blocks of one queue and the thread that runs them. Held by the queue and by its thread, so
/// that either may go first.
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
  void close() noexcept;

  /// When the timer is due, its block runs like one that was added then.
  void schedule(std::shared_ptr<TimerSchedule::Entry> entry);
  /// `entry` is null afterwards, and its block is destroyed here unless its turn has come. Callable
  /// twice on one pointer, also at once: the lock of this object guards it.
  void cancel(std::shared_ptr<TimerSchedule::Entry>& entry);

  /// The worker whose block runs on this thread; null on all other threads.
  [[nodiscard]] static const QueueWorker* current();

 private:
  using Lock = std::unique_lock<std::mutex>;

  void runUntilIdle();
  bool takeBatch();
  void takeDueTimers();
  bool sleep(Lock& lock);
  void runBatch();
  bool beginBlock();
  void endBlock();
  void setHeld();
  void ensureRunning(Lock& lock);
  [[nodiscard]] bool startThread() noexcept;
  void wakeWaiters();
  [[nodiscard]] bool hasWork() const;
  [[nodiscard]] bool isRunning() const;
  [[nodiscard]] std::uint64_t finished() const;

  const std::string label_;
  const std::shared_ptr<const ExceptionOutlet> outlet_;
  const std::chrono::milliseconds idleTime_;

  std::mutex mutex_;
  // Guarded by mutex_.
  std::condition_variable work_;
  std::condition_variable progress_;
  std::deque<Block> waiting_;
  TimerSchedule timers_;
  std::uint64_t added_ = 0;
  bool hasThread_ = false;
  bool isAsleep_ = false;
  bool isPaused_ = false;
  bool isClosed_ = false;

  // Of the thread that runs; guarded by mutex_ while there is none.
  std::deque<Block> batch_;

  // Read without the lock between two blocks.
  std::atomic<bool> isHeld_{false};      ///< Paused or closed.
  std::atomic<std::uint64_t> steps_{0};  ///< Beginnings and ends of blocks: odd while one runs.
  std::atomic<std::uint32_t> waiters_{0};
};

}  // namespace pelorino
