#include "ActivityLogic.h"

#include <utility>

#include "Logger.h"
#include "SessionEvents.h"
#include "Validator.h"

namespace pelorino {

void ActivityLogic::startActivity() {
  if (activityService_.isActive()) return;
  if (!projectService_.getTrackingAvailable()) {
    Logger::writeLog(PLRLogLevel::info, "SDK not active!\n\t Tracking status is Disable!");
    return;
  }
  Logger::writeLog(PLRLogLevel::debug, "Start activity");
  const bool isNewSession = activityService_.startActivity().value_or(false);
  if (isNewSession && events_.hasSession()) {
    auto event = events_.stamped(SessionStart{});
    event.timestamp = *stateManager_.getActiveUser()->sessionId;  // The clock may have gone on.
    events_.addAsIs(std::move(event));
    reportService_.sendBufferedEvents();
  }
  timerService_.startTimers();
}

void ActivityLogic::stopActivity() {
  if (!activityService_.isActive()) return;
  Logger::writeLog(PLRLogLevel::debug, "Stop activity");
  // Everything that belongs to the session becomes events before the report is packed: the process
  // may never run again.
  accruals_.addCurrencyAccrual();
  events_.generatePeopleEvent(false);
  sendUserEngagement();
  reportService_.sendBufferedEvents();
  timerService_.stopTimers();
}

void ActivityLogic::sendUserEngagement() {
  if (!events_.hasSession()) return;
  const auto length = activityService_.stopActivity();
  if (!length) return;
  if (*length < 1) {
    Logger::writeLog(PLRLogLevel::debug,
                     "The user engagement event was not generated, session length is zero");
    return;
  }
  events_.add(UserEngagement{.length = *length});
}

void ActivityLogic::sendAlive() {
  // The tick may have waited in the queue while tracking was switched off.
  if (!projectService_.getTrackingAvailable() || Validator::isExcluded("al")) return;
  // Not stored: a late one would be worth nothing.
  reportService_.sendFlashEvent(Event(events_.stamped(Alive{})));
}

void ActivityLogic::sendDeviceInfo() {
  if (Validator::isExcluded("di")) return;
  auto info = stateManager_.getDeviceInfo();
  if (!info) return;
  events_.add(std::move(*info));
}

}  // namespace pelorino
