#include "TimerService.h"

#include <algorithm>
#include <utility>

namespace pelorino {
namespace {

constexpr std::int64_t defaultCurrencyAggregationTimeout = 360'000;
constexpr std::int64_t activityTimeout = 15'000;
constexpr std::chrono::milliseconds tolerance{500};  ///< Lets the system wake up less often.

}  // namespace

std::chrono::seconds timerPeriod(std::int64_t milliseconds) {
  using namespace std::chrono_literals;
  constexpr std::chrono::seconds longest = std::chrono::days(3650);
  return std::clamp<std::chrono::seconds>(std::chrono::seconds(milliseconds / 1000), 1s, longest);
}

/// How the timers differ. One entry for each Slot, in the same order.
struct TimerService::Kind {
  std::int64_t (*period)(const Config&);  ///< Milliseconds.
  std::function<void()> TimerService::*onTick;
};

const std::array<TimerService::Kind, 4> TimerService::kinds{{
    {[](const Config& config) { return config.aliveTimeout; }, &TimerService::onAliveTimerTick},
    {[](const Config& config) {
       return config.currencyAggregationTimeout.value_or(defaultCurrencyAggregationTimeout);
     },
     &TimerService::onCurrencyAccrualTimerTick},
    {[](const Config& config) { return config.timeForRequest; }, &TimerService::onRequestTimerTick},
    {[](const Config&) { return activityTimeout; }, &TimerService::onActivityTimerTick},
}};

TimerService::TimerService(Run& run, StateManager& stateManager, Executor& executor)
    : run_(run), stateManager_(stateManager), executor_(executor) {}

void TimerService::startTimers() {
  state_.update([this](State& state) {
    state.isRunning = true;
    readPeriods(state);
  });
  scheduleMissing();
}

void TimerService::stopTimers() {
  state_.update([](State& state) {
    state.isRunning = false;
    state.timers = {};
  });
}

void TimerService::resetRequestTimer() {
  state_.update([this](State& state) {
    state.timers[request].reset();
    readPeriods(state);
  });
  scheduleMissing();
}

// The periods are copied because the main thread must not read the project: it belongs to the
// incomeQueue.
void TimerService::readPeriods(State& state) const {
  const Config& config = stateManager_.getActiveProject()->configuration;
  for (std::size_t slot = 0; slot < kinds.size(); ++slot) {
    state.periods[slot] = timerPeriod(kinds[slot].period(config));
  }
}

void TimerService::scheduleMissing() {
  executor_.mainQueue().add(run_.block([this] {
    state_.update([this](State& state) {
      if (!state.isRunning) return;  // stopTimers() was called meanwhile.
      for (std::size_t slot = 0; slot < kinds.size(); ++slot) {
        if (state.timers[slot]) continue;
        state.timers[slot] =
            executor_.repeat(state.periods[slot], tolerance, run_.callback([this, slot] {
              if (const auto& onTick = this->*kinds[slot].onTick) onTick();
            }));
      }
    });
  }));
}

}  // namespace pelorino
