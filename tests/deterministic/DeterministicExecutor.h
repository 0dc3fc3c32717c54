#pragma once

#include <string_view>

#include "Executor.h"
#include "VirtualScheduler.h"

namespace pelorino {

/// Queues, semaphores and timers on the steps and the time of a VirtualScheduler.
///
/// What a block throws goes to the exception handler; without one it is thrown to the test, by the
/// call that let the block run. The handler stays over resets, as the library sets it only once.
class DeterministicExecutor final : public Executor {
 public:
  explicit DeterministicExecutor(VirtualScheduler& scheduler);

  [[nodiscard]] std::unique_ptr<SerialQueue> makeQueue(std::string label) override;
  [[nodiscard]] std::unique_ptr<Semaphore> makeSemaphore() override;
  SerialQueue& mainQueue() override { return *mainQueue_; }
  [[nodiscard]] std::unique_ptr<Timer> repeat(std::chrono::milliseconds period,
                                              std::chrono::milliseconds tolerance,
                                              Block tick) override;
  [[nodiscard]] std::unique_ptr<Timer> after(std::chrono::milliseconds delay, Block block) override;
  void setExceptionHandler(ExceptionHandler handler) override { handler_ = std::move(handler); }

  /// Has each tick come late by a part of its tolerance that the seed chooses. Ticks are on time
  /// otherwise.
  void useTolerance(bool use) { usesTolerance_ = use; }

  void reset(std::uint64_t seed);

  /// For a catch clause: passes on the exception that is being handled.
  void report(const std::string& label);

 private:
  [[nodiscard]] std::chrono::milliseconds lateness(std::chrono::milliseconds tolerance);

  VirtualScheduler& scheduler_;
  ExceptionHandler handler_;
  bool usesTolerance_ = false;
  std::mt19937_64 random_;
  std::unique_ptr<SerialQueue> mainQueue_;
};

}  // namespace pelorino
