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
  const User& user = *services_.stateManager->getActiveUser();
  if (isNewSession && user.sessionId) {
    services_.eventsService->addEvent(
        Event(SessionStart{.timestamp = *user.sessionId, .level = user.level}));
    services_.reportService->sendBufferedEvents();
  }
  services_.timerService->startTimers();
}

void AnalyticsLogic::stopActivity() {
  if (!services_.activityService->isActive()) return;
  Logger::writeLog(PLRLogLevel::debug, "Stop activity");
  sendUserEngagement();
  services_.reportService->sendBufferedEvents();
  services_.timerService->stopTimers();
}

void AnalyticsLogic::sendUserEngagement() {
  const User& user = *services_.stateManager->getActiveUser();
  if (!user.sessionId) return;
  const auto length = services_.activityService->stopActivity();
  if (!length) return;
  if (*length < 1) {
    Logger::writeLog(PLRLogLevel::debug,
                     "The user engagement event was not generated, session length is zero");
    return;
  }
  services_.eventsService->addEvent(Event(UserEngagement{.timestamp = clock_.milliseconds(),
                                                         .level = user.level,
                                                         .length = *length,
                                                         .sessionId = *user.sessionId}));
}

void AnalyticsLogic::sendAlive() {
  if (Validator::isExcluded("al")) return;
  services_.reportService->sendFlashEvent(Event(Alive{.timestamp = clock_.milliseconds()}));
}

void AnalyticsLogic::sendDeviceInfo() {
  if (Validator::isExcluded("di")) return;
  auto info = services_.stateManager->getDeviceInfo();
  if (!info) return;
  info->timestamp = clock_.milliseconds();  // Only now: the device data may have been waited for.
  services_.eventsService->addEvent(Event(std::move(*info)));
}

}  // namespace pelorino
