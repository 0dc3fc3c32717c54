#pragma once

#include <cstdint>
#include <utility>

#include "Clock.h"
#include "Event.h"
#include "EventsService.h"
#include "PeopleService.h"
#include "ProjectService.h"
#include "ReportService.h"
#include "StateManager.h"
#include "UserService.h"

namespace pelorino {

/// Makes events of the active user, stores them and sends them.
///
/// Threads: the incomeQueue only.
class UserEvents final {
 public:
  UserEvents(StateManager& stateManager, ProjectService& projectService, UserService& userService,
             EventsService& eventsService, ReportService& reportService,
             PeopleService& peopleService, const Clock& clock)
      : stateManager_(stateManager),
        projectService_(projectService),
        userService_(userService),
        eventsService_(eventsService),
        reportService_(reportService),
        peopleService_(peopleService),
        clock_(clock) {}

  /// What reports something of a session stops here without one.
  [[nodiscard]] bool hasSession() const {
    return stateManager_.getActiveUser()->sessionId.has_value();
  }

  /// Milliseconds since 1970, as events tell them.
  [[nodiscard]] std::int64_t now() const { return clock_.milliseconds(); }

  /// The record with what events have in common, as far as it has these fields: the time, and the
  /// session, level and progression of the active user.
  template <class Record>
  [[nodiscard]] Record stamped(Record record) const;

  /// Stores the stamped record as an event.
  template <class Record>
  void add(Record record) {
    addAsIs(stamped(std::move(record)));
  }

  /// Stores the record as it stands.
  template <class Record>
  void addAsIs(Record record) {
    eventsService_.addEvent(Event(std::move(record)));
  }

  /// Stores an event of what has changed in the user's card, or of the whole card.
  void generatePeopleEvent(bool needFullCard);

  /// Sends what is stored of all users, as events and as what has changed in the card.
  void sendBufferedEvents();

 private:
  StateManager& stateManager_;
  ProjectService& projectService_;
  UserService& userService_;
  EventsService& eventsService_;
  ReportService& reportService_;
  PeopleService& peopleService_;
  const Clock& clock_;
};

template <class Record>
Record UserEvents::stamped(Record record) const {
  const User& user = *stateManager_.getActiveUser();
  record.timestamp = now();
  if constexpr (requires { record.sessionId; }) record.sessionId = user.sessionId.value_or(0);
  if constexpr (requires { record.level; }) record.level = user.level;
  if constexpr (requires { record.inProgress; }) {
    if (const auto& location = userService_.getLocation()) record.inProgress = {location->name};
  }
  return record;
}

}  // namespace pelorino
