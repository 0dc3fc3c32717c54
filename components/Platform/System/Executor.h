#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "Block.h"

namespace pelorino {

/// A serial queue: blocks run one at a time, in their order of arrival.
class SerialQueue {
 public:
  virtual ~SerialQueue() = default;

  /// Any thread, also from a block. Never waits for running work.
  virtual void add(Block block) = 0;

  /// A running block ends; later ones wait for resume(). Callable twice.
  virtual void pause() = 0;
  virtual void resume() = 0;

  /// Returns when the queue is empty. It returns early where waiting could not end: from a block of
  /// this queue at once, on a paused queue as soon as the running block has ended, and when
  /// `awaitedNewcomers` blocks that were added during the wait have run as well.
  virtual void waitUntilAllBlocksAreFinished() = 0;

  /// Enough for blocks that add blocks, and for handlers of the host within handlers; few enough
  /// that a block which always adds the next one does not hold up a host for long.
  static constexpr std::uint64_t awaitedNewcomers = 100;

  /// True on the thread that runs a block of this queue, inside that block.
  [[nodiscard]] virtual bool isCurrent() const = 0;
};

/// A repeating timer or a delayed block that has not run yet. Releasing the handle cancels it.
class Timer {
 public:
  virtual ~Timer() = default;

  /// No tick begins after this returns, except one that is running on the main thread meanwhile.
  /// Any thread; callable twice.
  virtual void cancel() = 0;
};

/// Waits of one thread for another.
class Semaphore {
 public:
  virtual ~Semaphore() = default;

  virtual void signal() = 0;

  /// Takes one signal. False if none came within `timeout`. In a block this blocks its queue.
  [[nodiscard]] virtual bool wait(std::chrono::milliseconds timeout) = 0;
};

/// Where and when work runs. Process-wide: queues and the main thread live as long as the process.
///
/// An exception that leaves a block ends that block only and goes to the handler.
class Executor {
 public:
  virtual ~Executor() = default;

  /// A new queue. Its thread starts with the first block and goes away when the queue has been
  /// idle for a while.
  [[nodiscard]] virtual std::unique_ptr<SerialQueue> makeQueue(std::string label) = 0;

  [[nodiscard]] virtual std::unique_ptr<Semaphore> makeSemaphore() = 0;

  /// The main thread, owned by the library: timers tick and delayed blocks run here, so what runs
  /// here must be short.
  virtual SerialQueue& mainQueue() = 0;

  /// Ticks on the main thread every `period`, first after one period, in phase with the start.
  /// A tick may come up to `tolerance` late, so that neighbouring ticks share a wake-up. A period
  /// below `minimumTimerPeriod` is raised to it, so that no timer spins.
  [[nodiscard]] virtual std::unique_ptr<Timer> repeat(std::chrono::milliseconds period,
                                                      std::chrono::milliseconds tolerance,
                                                      Block tick) = 0;

  /// Runs `block` once on the main thread, `delay` from now.
  [[nodiscard]] virtual std::unique_ptr<Timer> after(std::chrono::milliseconds delay,
                                                     Block block) = 0;

  /// Called for an exception that leaves a block, with the queue's label and the exception's text.
  /// Set once, before work is added.
  using ExceptionHandler = std::function<void(std::string_view queue, std::string_view what)>;
  virtual void setExceptionHandler(ExceptionHandler handler) = 0;

  static constexpr std::chrono::milliseconds minimumTimerPeriod{1000};
};

}  // namespace pelorino
