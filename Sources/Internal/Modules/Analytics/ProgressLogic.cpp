#include "ProgressLogic.h"

#include <fmt/format.h>

#include <cmath>
#include <string>
#include <utility>

#include "Logger.h"
#include "ProgressEvents.h"

namespace pelorino {
namespace {

/// Whether the running progression has this name. If not, the log tells why it cannot end.
bool isFinishable(const std::optional<Location>& location, const std::string& name) {
  if (!location) {
    Logger::writeLog(PLRLogLevel::warning,
                     "Progression event can't be finished!\n"
                     "\tDoesn't have any started progression events");
    return false;
  }
  if (location->name == name) return true;
  Logger::writeLog(PLRLogLevel::warning, [&] {
    return fmt::format(
        "Progression event can't be finished!\n\tStarted progression event name is [{}]\n"
        "\tCurrent event name is [{}]",
        location->name, name);
  });
  return false;
}

/// Whole seconds: `duration`, or the time between `start` and `end`, rounded up. Absent when it
/// is 0.
std::optional<std::int64_t> lengthOf(std::int64_t duration, std::int64_t start, std::int64_t end) {
  if (duration < 1) {
    const double elapsed = static_cast<double>(end) - static_cast<double>(start);
    duration = static_cast<std::int64_t>(std::ceil(elapsed / 1000.0));
  }
  if (duration == 0) return std::nullopt;
  return duration;
}

}  // namespace

void ProgressLogic::perform(LevelUpCall call) {
  if (!events_.hasSession()) return;
  accruals_.addCurrencyAccrual();  // The sums belong to the old level.
  const std::int64_t oldLevel = stateManager_.getActiveUser()->level;
  LevelUp event = events_.stamped(LevelUp{.balance = std::move(call.balances)});
  event.level = call.level;
  if (call.level - 1 == oldLevel) {  // Otherwise the sums are not those of one level.
    event.spent = levelResourceService_.getSpentResources();
    event.earned = levelResourceService_.getEarnedResources();
    event.bought = levelResourceService_.getBoughtResources();
  }
  userService_.resourceAggregation(true);
  userService_.setUserLevel(call.level);
  events_.addAsIs(std::move(event));
  events_.sendBufferedEvents();
  levelResourceService_.removeResourcesForActiveUser();
  currencyAccrualService_.removeResourcesForActiveUser();
}

void ProgressLogic::perform(CurrentBalanceCall call) {
  if (!events_.hasSession()) return;
  if (userService_.isBalanceSentForActiveUser()) {
    Logger::writeLog(PLRLogLevel::warning,
                     "The CurrentBalance event is already sent, in this game session");
    return;
  }
  events_.add(CurrentBalance{.balance = std::move(call.balance)});
  userService_.changeCurBalanceSentMark(true);
}

void ProgressLogic::perform(TutorialCall call) {
  if (!events_.hasSession()) return;
  if (userService_.isTutorialStepMarked(call.step)) {
    Logger::writeLog(PLRLogLevel::warning,
                     [&] { return fmt::format("Tutorial step [{}] is already used", call.step); });
    return;
  }
  events_.add(Tutorial{.step = call.step});
  userService_.markTutorialStep(call.step);  // After the event: a crash repeats it, and loses none.
  Logger::writeLog(PLRLogLevel::info,
                   [&] { return fmt::format("The tutorial step [{}] is saved", call.step); });
}

void ProgressLogic::perform(StartProgressionEventCall call) {
  userService_.activateLocation({.name = call.eventName,
                                 .source = std::move(call.parameters.source),
                                 .difficulty = call.parameters.difficulty,
                                 .startTimestamp = events_.now()});
  Logger::writeLog(PLRLogLevel::info,
                   [&] { return fmt::format("Activated ProgressionEvent: [{}]", call.eventName); });
}

void ProgressLogic::perform(FinishProgressionEventCall call) {
  const auto& location = userService_.getLocation();  // Valid until clearLocation().
  if (!isFinishable(location, call.eventName) || !events_.hasSession()) return;
  auto& [success, duration, spent, earned] = call.parameters;
  events_.add(ProgressionEvent{
      .name = call.eventName,
      .spent = std::move(spent),
      .earned = std::move(earned),
      .parameters = {.success = success,
                     .duration = lengthOf(duration, location->startTimestamp, events_.now()),
                     .difficulty = location->difficulty,
                     .source = location->source}});
  events_.sendBufferedEvents();
  userService_.clearLocation(false);
  Logger::writeLog(PLRLogLevel::info, [&] {
    return fmt::format("The ProgressionEvent [{}] is finished", call.eventName);
  });
}

}  // namespace pelorino
