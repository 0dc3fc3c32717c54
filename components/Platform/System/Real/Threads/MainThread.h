#pragma once

#include <chrono>
#include <memory>

#include "RealQueue.h"

namespace pelorino {

/// The queue of the main thread, and the timers that tick on it. While a timer is set the thread
/// stays, and wakes for nothing but timers and blocks.
class MainThread final : public RealQueue {
 public:
  explicit MainThread(std::shared_ptr<const ExceptionOutlet> outlet,
                      std::chrono::milliseconds idle = idleTime);

  /// First after `delay`, then every `period`; once when that is zero.
  [[nodiscard]] std::unique_ptr<Timer> startTimer(std::chrono::milliseconds delay,
                                                  std::chrono::milliseconds period,
                                                  std::chrono::milliseconds tolerance, Block block);
};

}  // namespace pelorino
