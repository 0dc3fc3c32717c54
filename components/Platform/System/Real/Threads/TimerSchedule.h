#pragma once

#include <atomic>
#include <chrono>
#include <deque>
#include <memory>
#include <optional>
#include <vector>

#include "Block.h"

namespace pelorino {

/// Timers and when they are due. It reads no clock, and its owner's lock guards it.
class TimerSchedule final {
 public:
  using TimePoint = std::chrono::steady_clock::time_point;

  struct Entry {
    Block block;
    TimePoint due;
    std::chrono::milliseconds tolerance{0};
    std::chrono::milliseconds period{0};  ///< Zero: due once.
    /// Checked when the block is about to run, on another thread than the one that sets it.
    std::atomic<bool> isCancelled{false};
  };

  void add(std::shared_ptr<Entry> entry);
  void remove(const std::shared_ptr<Entry>& entry);
  [[nodiscard]] bool isEmpty() const { return entries_.empty(); }

  /// The latest moment at which no timer is late: what is due until then shares one wake-up.
  [[nodiscard]] std::optional<TimePoint> nextWakeUp() const;

  /// Appends one block for every timer that is due, earliest first. A repeating timer stays in
  /// phase with its start; ticks that were missed altogether are one tick.
  void takeDue(TimePoint now, std::deque<Block>& blocks);

 private:
  std::vector<std::shared_ptr<Entry>> entries_;
};

}  // namespace pelorino
