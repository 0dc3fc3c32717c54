// The user's card: when it is told to the backend, and what of it.

#include <utility>

#include "AnalyticsLogic.h"
#include "JsonHelpers.h"
#include "PeopleEvent.h"

namespace pelorino {

void AnalyticsLogic::preparePeopleCardCallback() {
  services_.peopleService->onClearedCard =
      onIncomeQueue([](AnalyticsLogic& logic) { logic.sendBufferedEvents(); });
  services_.peopleService->didChangeCheaterMark = [weak = weak_from_this()] {
    if (const auto self = weak.lock()) self->generatePeopleEvent(false);
  };
}

void AnalyticsLogic::generatePeopleEvent(bool needFullCard) {
  if (!services_.projectService->getTrackingAvailable()) return;
  PeopleService& people = *services_.peopleService;
  if (!needFullCard && !people.isNeedToSend()) return;
  if (!hasSession()) return;  // Nothing is lost: what has changed stays marked.
  PeopleEvent event;
  if (!people.isNeedToClear()) {
    const PeopleProperties properties = people.getParameters(needFullCard);
    if (properties.empty()) return;
    event.parameters =
        from<AnyCodable::Object>(peopleJson(properties)).value_or(AnyCodable::Object());
  }
  addEvent(std::move(event));
  people.removeNulls();
  people.unmarkUpdated();
  people.unmarkCleared();
}

}  // namespace pelorino
