#include "MessagingLogic.h"

#include <utility>

#include "PushEvents.h"

namespace pelorino {

void MessagingLogic::pushToken(std::string token, bool isAllowed) {
  eventsService_.addEvent(Event(PushToken{
      .timestamp = clock_.milliseconds(), .isAllowed = isAllowed, .token = std::move(token)}));
  sendBufferedEvents();
}

void MessagingLogic::pushOpened(std::int64_t timestamp, std::int64_t pushId,
                                std::optional<std::string> button) {
  eventsService_.addEvent(
      Event(PushOpened{.timestamp = timestamp, .pushId = pushId, .button = std::move(button)}));
  sendBufferedEvents();
}

/// As a block of its own, after everything already queued: like the host's own call.
void MessagingLogic::sendBufferedEvents() {
  run_.add(QueueManager::incomeQueue(),
           [this] { analyticsLogic_.perform(SendBufferedEventsCall()); });
}

void MessagingLogic::getPushCategories(MessagingService::Callback callback) {
  messagingService_.getPushCategories(std::move(callback));
}

}  // namespace pelorino
