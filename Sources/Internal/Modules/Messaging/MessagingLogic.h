#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "AnalyticsLogic.h"
#include "Clock.h"
#include "EventsService.h"
#include "MessagingService.h"
#include "Run.h"

namespace pelorino {

/// Stores events about pushes, and gives a messaging library the categories.
///
/// Threads: the incomeQueue only; for the callback see MessagingService.
class MessagingLogic final {
 public:
  MessagingLogic(Run& run, AnalyticsLogic& analyticsLogic, EventsService& eventsService,
                 MessagingService& messagingService, const Clock& clock)
      : run_(run),
        analyticsLogic_(analyticsLogic),
        eventsService_(eventsService),
        messagingService_(messagingService),
        clock_(clock) {}

  void pushToken(std::string token, bool isAllowed);
  /// `timestamp`: time of the opening, in milliseconds since 1970.
  void pushOpened(std::int64_t timestamp, std::int64_t pushId, std::optional<std::string> button);
  void getPushCategories(MessagingService::Callback callback);

 private:
  void sendBufferedEvents();

  Run& run_;
  AnalyticsLogic& analyticsLogic_;
  EventsService& eventsService_;
  MessagingService& messagingService_;
  const Clock& clock_;
};

}  // namespace pelorino
