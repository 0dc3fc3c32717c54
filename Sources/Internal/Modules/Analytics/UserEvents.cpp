#include "UserEvents.h"

#include "CustomEvents.h"

namespace pelorino {

void UserEvents::generatePeopleEvent(bool needFullCard) {
  if (!projectService_.getTrackingAvailable()) return;
  if (!needFullCard && !peopleService_.isNeedToSend()) return;
  if (!hasSession()) return;  // Nothing is lost: the changes stay marked.
  PeopleEvent event;
  // A cleared card is sent as null, whatever has changed in it since.
  if (!peopleService_.isNeedToClear()) {
    event.parameters = peopleService_.getParameters(needFullCard);
    if (event.parameters->empty()) return;
  }
  add(std::move(event));
  peopleService_.removeNulls();
  peopleService_.unmarkUpdated();
  peopleService_.unmarkCleared();
}

void UserEvents::sendBufferedEvents() {
  generatePeopleEvent(false);
  reportService_.sendBufferedEvents();
}

}  // namespace pelorino
