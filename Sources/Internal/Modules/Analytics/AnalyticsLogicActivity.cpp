// Activity of the application: the life cycle, sessions, and what is told of them.

#include <utility>

#include "Alive.h"
#include "AnalyticsLogic.h"
#include "Event.h"
#include "Logger.h"
#include "QueueManager.h"
#include "SessionStart.h"
#include "UserEngagement.h"
#include "Validator.h"

namespace pelorino {

void AnalyticsLogic::goActive() {
  QueueManager::incomeQueue().addOperation([weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->startActivity();
  });
}

void AnalyticsLogic::goInactive() {
  stopSession();
}

void AnalyticsLogic::goBackground() {
  stopSession();
}

void AnalyticsLogic::goTerminate() {
  stopSession();
}

void AnalyticsLogic::stopSession() {
  QueueManager::incomeQueue().addOperation([weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->stopActivity();
  });
  QueueManager::incomeQueue().waitUntilAllOperationsAreFinished();
}

void AnalyticsLogic::startActivity() {
  if (services_.activityService->isActive()) return;
  if (!services_.projectService->getTrackingAvailable()) {
    Logger::writeLog(PLRLogLevel::info, "SDK not active!\n\t Tracking status is Disable!");
    return;
  }
  Logger::writeLog(PLRLogLevel::debug, "Start activity");
  const bool isNewSession = services_.activityService->startActivity().value_or(false);
  if (isNewSession && hasSession()) {
    auto event = stamped(SessionStart{});
    event.timestamp = *services_.stateManager->getActiveUser()->sessionId;
    services_.eventsService->addEvent(Event(std::move(event)));
    services_.reportService->sendBufferedEvents();
  }
  services_.timerService->startTimers();
}

void AnalyticsLogic::stopActivity() {
  if (!services_.activityService->isActive()) return;
  Logger::writeLog(PLRLogLevel::debug, "Stop activity");
  addCurrencyAccrual();
  generatePeopleEvent(false);
  sendUserEngagement();
  services_.reportService->sendBufferedEvents();
  services_.timerService->stopTimers();
}

void AnalyticsLogic::sendUserEngagement() {
  if (!hasSession()) return;
  const auto length = services_.activityService->stopActivity();
  if (!length) return;
  if (*length < 1) {
    Logger::writeLog(PLRLogLevel::debug,
                     "The user engagement event was not generated, session length is zero");
    return;
  }
  addEvent(UserEngagement{.length = *length});
}

void AnalyticsLogic::sendAlive() {
  // A tick may have waited behind the switch.
  if (!services_.projectService->getTrackingAvailable() || Validator::isExcluded("al")) return;
  services_.reportService->sendFlashEvent(Event(stamped(Alive{})));
}

void AnalyticsLogic::sendDeviceInfo() {
  if (Validator::isExcluded("di")) return;
  auto info = services_.stateManager->getDeviceInfo();
  if (!info) return;
  addEvent(std::move(*info));
}

}  // namespace pelorino
