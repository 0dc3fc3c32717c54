// What the host reports, one event a call.

#include <iterator>
#include <optional>
#include <utility>

#include "AdImpression.h"
#include "AnalyticsLogic.h"
#include "CustomEvent.h"
#include "Logger.h"
#include "Referral.h"
#include "SocialNetworkConnect.h"
#include "SocialNetworkPost.h"

namespace pelorino {

bool AnalyticsLogic::hasSession() const {
  return services_.stateManager->getActiveUser()->sessionId.has_value();
}

void AnalyticsLogic::perform(CustomEventCall call) {
  if (!hasSession()) return;
  addEvent(CustomEvent{.name = std::move(call.name),
                       .parameters = {std::move_iterator(call.params.begin()),
                                      std::move_iterator(call.params.end())}});
}

void AnalyticsLogic::perform(SocialNetworkConnectCall call) {
  if (!hasSession()) return;
  addEvent(SocialNetworkConnect{.socialNetwork = std::move(call.name)});
}

void AnalyticsLogic::perform(SocialNetworkPostCall call) {
  if (!hasSession()) return;
  addEvent(SocialNetworkPost{.socialNetwork = std::move(call.name),
                             .postReason = std::move(call.reason)});
}

void AnalyticsLogic::perform(AdImpressionCall call) {
  if (!hasSession()) return;
  addEvent(AdImpression{.network = std::move(call.network),
                        .placement = std::move(call.placement),
                        .unit = std::move(call.unit),
                        .revenue = call.revenue});
}

void AnalyticsLogic::perform(ReferrerCall call) {
  if (services_.projectService->isRefererSent()) {
    Logger::writeLog(PLRLogLevel::info, "The referrer has been sent");
    return;
  }
  if (!hasSession()) return;
  const auto valueOf = [&](const char* property) -> std::optional<std::string> {
    const auto found = call.utmData.find(property);
    if (found == call.utmData.end()) return std::nullopt;
    return std::move(found->second);
  };
  // Not stamped: a progression has no part in where the user came from.
  services_.eventsService->addEvent(
      Event(Referral{.timestamp = clock_.milliseconds(),
                     .sessionId = *services_.stateManager->getActiveUser()->sessionId,
                     .source = valueOf("source"),
                     .campaign = valueOf("campaign"),
                     .content = valueOf("content"),
                     .medium = valueOf("medium"),
                     .term = valueOf("term")}));
  generatePeopleEvent(false);
  services_.reportService->sendBufferedEvents();
  services_.projectService->setIsRefererSent(true);
}

void AnalyticsLogic::perform(SendBufferedEventsCall) {
  sendBufferedEvents();
}

void AnalyticsLogic::sendBufferedEvents() {
  generatePeopleEvent(false);
  services_.reportService->sendBufferedEvents();
}

std::int64_t AnalyticsLogic::getCustomEventParamsCount() const {
  return customEventParamsCount_;
}

}  // namespace pelorino
