#pragma once

#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "Event.h"
#include "Repositories.h"
#include "StateManager.h"

namespace pelorino {

/// Turns event values into stored rows, past the gates of tracking and of the configuration.
///
/// Threads: the incomeQueue only.
class EventsService final {
 public:
  EventsService(StateManager& stateManager, EventRepository& eventRepository);

  /// Called, within addEvent, when a user has enough stored events to be sent.
  std::function<void()> onFullStackAction;

  /// Stores the event for the active user, or for the given one.
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
