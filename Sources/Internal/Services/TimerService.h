#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>

#include "Config.h"
#include "Executor.h"
#include "Guarded.h"
#include "Run.h"
#include "StateManager.h"

namespace pelorino {

/// The period of a timer in whole seconds, rounded down. It is at least one second, so that no
/// timer runs all the time, and at most ten years.
[[nodiscard]] std::chrono::seconds timerPeriod(std::int64_t milliseconds);

/// Owns the four repeating timers that run while the application is in the foreground. The
/// callbacks decide what a tick does.
///
/// Threads: operations and callbacks on the incomeQueue; the timers are made and tick on the
/// library's main thread. Set the callbacks before the first start.
class TimerService final {
 public:
  TimerService(Run& run, StateManager& stateManager, Executor& executor);

  std::function<void()> onAliveTimerTick;
  std::function<void()> onCurrencyAccrualTimerTick;
  std::function<void()> onRequestTimerTick;
  std::function<void()> onActivityTimerTick;

  /// Starts the timers that are not running, with the periods of the present configuration. A
  /// running timer goes on unchanged. Returns at once.
  void startTimers();

  /// Stops all timers, also those that startTimers() has not made yet.
  void stopTimers();

  /// Restarts the request timer: its next tick is a whole period away.
  void resetRequestTimer();

 private:
  struct Kind;
  static const std::array<Kind, 4> kinds;
  enum Slot : std::size_t { alive, currencyAccrual, request, activity };

  /// Used by the incomeQueue and the main thread.
  struct State {
    bool isRunning = false;
    std::array<std::chrono::seconds, 4> periods{};
    std::array<std::unique_ptr<Timer>, 4> timers;
  };

  void readPeriods(State& state) const;
  void scheduleMissing();

  Run& run_;
  StateManager& stateManager_;
  Executor& executor_;
  Guarded<State> state_;
};

}  // namespace pelorino
