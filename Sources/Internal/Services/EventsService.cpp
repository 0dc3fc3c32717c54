#include "EventsService.h"

#include <fmt/format.h>

#include <cstdint>
#include <utility>

#include "Event.h"
#include "Logger.h"

namespace pelorino {

EventsService::EventsService(StateManager& stateManager, EventRepository& eventRepository)
    : stateManager_(stateManager), eventRepository_(eventRepository) {}

void EventsService::addEvent(const Storable& event) {
  createEventForUser(event, *stateManager_.getActiveUser());
}

void EventsService::addEvent(const Storable& event, const User& user) {
  createEventForUser(event, user);
}

void EventsService::removeAllEvents() {
  eventRepository_.clear();
}

void EventsService::removeInactiveUserData(std::span<const RowId> userIds) {
  eventRepository_.deleteForDataForUsers(userIds);
}

bool EventsService::passesGates(const Storable& event) const {
  const Project& project = *stateManager_.getActiveProject();
  if (!project.trackingAvailable) {
    Logger::writeLog(PLRLogLevel::debug, [&] {
      return fmt::format("Event [{}] not created. Tracking is Disabled", event.code());
    });
    return false;
  }
  const auto& exclude = project.configuration.exclude;
  if (exclude && exclude->all.value_or(false)) {
    Logger::writeLog(PLRLogLevel::info, "All events is excluded by project configuration");
    return false;
  }
  return true;
}

void EventsService::createEventForUser(const Storable& event, const User& user) {
  if (!passesGates(event)) return;
  const bool isActive = &user == stateManager_.getActiveUser().get();
  // An event without a stored user would belong to nobody after a restart. Only the active user can
  // be without a row.
  if (isActive && !stateManager_.ensureActiveUserIsStored()) return;
  const auto object = std::make_shared<EventObject>();
  object->code = event.code();
  object->userId = user.idKey;
  object->json = event.getJson();
  eventRepository_.insert(object);
  Logger::writeLog(PLRLogLevel::info,
                   [&] { return "Create a new event: \n" + event.description(); });
  const auto waiting = static_cast<std::int64_t>(eventRepository_.countOfUser(user.idKey));
  const auto& configuration = stateManager_.getActiveProject()->configuration;
  if (waiting >= configuration.countForRequest && onFullStackAction) onFullStackAction();
}

}  // namespace pelorino
