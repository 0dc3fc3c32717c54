#pragma once

#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "Event.h"
#include "Repositories.h"
#include "StateManager.h"

namespace pelorino {

/// Stores events, unless tracking is off or the configuration excludes all events.
///
/// Threads: the incomeQueue only.
/// Errors:  an event that is not stored is logged.
class EventsService final {
 public:
  EventsService(StateManager& stateManager, EventRepository& eventRepository);

  /// Called within addEvent() when the user has enough stored events for a report.
  std::function<void()> onFullStackAction;

  /// Stores an event of the active user, or of the given one.
  void addEvent(const Storable& event);
  void addEvent(const Storable& event, const User& user);

  void removeAllEvents();
  void removeInactiveUserData(std::span<const RowId> userIds);

 private:
  [[nodiscard]] bool passesGates(const Storable& event) const;
  void createEventForUser(const Storable& event, const User& user);

  StateManager& stateManager_;
  EventRepository& eventRepository_;
};

}  // namespace pelorino
