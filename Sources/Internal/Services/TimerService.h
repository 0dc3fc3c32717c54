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

/// Period of a timer whose configuration says `milliseconds`: whole seconds, the fraction dropped.
/// It is at least a second, so that no timer spins, and at most ten years.
[[nodiscard]] std::chrono::seconds timerPeriod(std::int64_t milliseconds);

/// Owns the four repeating timers that run while the application is in the foreground. It knows
/// nothing of what a tick means.
///
/// Threads: operations and callbacks on the incomeQueue; timers are made and tick on the main
/// thread. Callbacks are set before the first start and not changed afterwards.
class TimerService final {
 public:
  TimerService(Run& run, StateManager& stateManager, Executor& executor);

  std::function<void()> onAliveTimerTick;
  std::function<void()> onCurrencyAccrualTimerTick;
  std::function<void()> onRequestTimerTick;
  std::function<void()> onActivityTimerTick;

  /// Starts those that aren't running, with the periods of the present configuration. A timer that
  /// runs keeps its phase. Returns at once.
  void startTimers();

  /// Stops all, also those of a start that is still under way.
  void stopTimers();

  /// Puts the next tick of the request timer a whole period away.
  void resetRequestTimer();

 private:
  struct Kind;
  static const std::array<Kind, 4> kinds;
  enum Slot : std::size_t { alive, currencyAccrual, request, activity };

  /// Reached from the incomeQueue and the main thread.
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
