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

  /// Most calls are dropped while the active user has no session.
  [[nodiscard]] bool hasSession() const {
    return stateManager_.getActiveUser()->sessionId.has_value();
  }

  /// Milliseconds since 1970.
  [[nodiscard]] std::int64_t now() const { return clock_.milliseconds(); }

  /// Fills the fields that events have in common: the time, and the active user's session, level
  /// and progression. Skips the fields that the record does not have.
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

  /// Stores an event with the whole card of the active user, or with its changes. Does nothing
  /// while tracking is off, without a session, or when there is nothing to report.
  void generatePeopleEvent(bool needFullCard);

  /// Stores the changes of the card as an event, then sends all stored events and reports.
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
