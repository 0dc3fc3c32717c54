// What the host reports.

#include <utility>

#include "AnalyticsLogic.h"
#include "CustomEvent.h"
#include "Event.h"

namespace pelorino {

void AnalyticsLogic::customEvent(std::string eventName, AnyCodable::Object parameters) {
  const User& user = *services_.stateManager->getActiveUser();
  if (!user.sessionId) return;
  services_.eventsService->addEvent(Event(CustomEvent{.timestamp = clock_.milliseconds(),
                                                      .sessionId = *user.sessionId,
                                                      .level = user.level,
                                                      .name = std::move(eventName),
                                                      .parameters = std::move(parameters)}));
}

void AnalyticsLogic::sendBufferedEvents() {
  services_.reportService->sendBufferedEvents();
}

std::int64_t AnalyticsLogic::getCustomEventParamsCount() {
  return customEventParamsCount_;
}

}  // namespace pelorino
