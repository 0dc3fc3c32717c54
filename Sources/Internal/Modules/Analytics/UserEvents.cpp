#include "UserEvents.h"

#include "CustomEvents.h"
#include "JsonHelpers.h"

namespace pelorino {

void UserEvents::generatePeopleEvent(bool needFullCard) {
  if (!projectService_.getTrackingAvailable()) return;
  if (!needFullCard && !peopleService_.isNeedToSend()) return;
  if (!hasSession()) return;  // Nothing is lost: the changes stay marked.
  PeopleEvent event;
  // A cleared card is sent as null, whatever has changed in it since.
  if (!peopleService_.isNeedToClear()) {
    const PeopleProperties properties = peopleService_.getParameters(needFullCard);
    if (properties.empty()) return;
    event.parameters =
        from<AnyCodable::Object>(peopleJson(properties)).value_or(AnyCodable::Object());
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
