// How far a player has come: levels, balances, the tutorial and progressions.

#include <fmt/format.h>

#include <cmath>
#include <string>
#include <utility>

#include "AnalyticsLogic.h"
#include "CurrentBalance.h"
#include "LevelUp.h"
#include "Logger.h"
#include "ProgressionEvent.h"
#include "Tutorial.h"

namespace pelorino {
namespace {

/// Whether the progression may end under this name; the log says why not.
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

/// Whole seconds, rounded up: the caller's, or those of the clock; absent when it has none.
std::optional<std::int64_t> lengthOf(std::int64_t duration, std::int64_t start, std::int64_t end) {
  if (duration < 1) {
    const double elapsed = static_cast<double>(end) - static_cast<double>(start);
    duration = static_cast<std::int64_t>(std::ceil(elapsed / 1000.0));
  }
  if (duration == 0) return std::nullopt;
  return duration;
}

}  // namespace

void AnalyticsLogic::perform(LevelUpCall call) {
  if (!hasSession()) return;
  addCurrencyAccrual();  // What came in belongs to the level that ends.
  const std::int64_t oldLevel = services_.stateManager->getActiveUser()->level;
  LevelResourceService& sums = *services_.levelResourceService;
  LevelUp event = stamped(LevelUp{.balance = std::move(call.balances)});
  event.level = call.level;
  if (call.level - 1 == oldLevel) {  // Otherwise they are not those of one level.
    event.spent = sums.getSpentResources();
    event.earned = sums.getEarnedResources();
    event.bought = sums.getBoughtResources();
  }
  services_.userService->resourceAggregation(true);
  services_.userService->setUserLevel(call.level);
  services_.eventsService->addEvent(Event(std::move(event)));
  generatePeopleEvent(false);
  services_.reportService->sendBufferedEvents();
  sums.removeResourcesForActiveUser();
  services_.currencyAccrualService->removeResourcesForActiveUser();
}

void AnalyticsLogic::perform(CurrentBalanceCall call) {
  if (!hasSession()) return;
  UserService& user = *services_.userService;
  if (user.isBalanceSentForActiveUser()) {
    Logger::writeLog(PLRLogLevel::warning,
                     "The CurrentBalance event is already sent, in this game session");
    return;
  }
  addEvent(CurrentBalance{.balance = std::move(call.balance)});
  user.changeCurBalanceSentMark(true);
}

void AnalyticsLogic::perform(TutorialCall call) {
  if (!hasSession()) return;
  UserService& user = *services_.userService;
  if (user.isTutorialStepMarked(call.step)) {
    Logger::writeLog(PLRLogLevel::warning,
                     [&] { return fmt::format("Tutorial step [{}] is already used", call.step); });
    return;
  }
  addEvent(Tutorial{.step = call.step});
  user.markTutorialStep(call.step);
  Logger::writeLog(PLRLogLevel::info,
                   [&] { return fmt::format("The tutorial step [{}] is saved", call.step); });
}

void AnalyticsLogic::perform(StartProgressionEventCall call) {
  services_.userService->activateLocation({.name = call.eventName,
                                           .source = std::move(call.parameters.source),
                                           .difficulty = call.parameters.difficulty,
                                           .startTimestamp = clock_.milliseconds()});
  Logger::writeLog(PLRLogLevel::info,
                   [&] { return fmt::format("Activated ProgressionEvent: [{}]", call.eventName); });
}

void AnalyticsLogic::perform(FinishProgressionEventCall call) {
  const auto& location = services_.userService->getLocation();
  if (!isFinishable(location, call.eventName) || !hasSession()) return;
  auto& [success, duration, spent, earned] = call.parameters;
  addEvent(ProgressionEvent{.name = call.eventName,
                            .spent = std::move(spent),
                            .earned = std::move(earned),
                            .parameters = {.success = success,
                                           .duration = lengthOf(duration, location->startTimestamp,
                                                                clock_.milliseconds()),
                                           .difficulty = location->difficulty,
                                           .source = location->source}});
  generatePeopleEvent(false);
  services_.reportService->sendBufferedEvents();
  services_.userService->clearLocation(false);
  Logger::writeLog(PLRLogLevel::info, [&] {
    return fmt::format("The ProgressionEvent [{}] is finished", call.eventName);
  });
}

}  // namespace pelorino
