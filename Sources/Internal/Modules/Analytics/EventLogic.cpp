#include "EventLogic.h"

#include <iterator>
#include <optional>
#include <utility>

#include "CustomEvents.h"
#include "Logger.h"
#include "PaymentEvents.h"
#include "SocialEvents.h"

namespace pelorino {

void EventLogic::perform(CustomEventCall call) {
  if (!events_.hasSession()) return;
  events_.add(CustomEvent{.name = std::move(call.name),
                          .parameters = {std::move_iterator(call.params.begin()),
                                         std::move_iterator(call.params.end())}});
}

void EventLogic::perform(SocialNetworkConnectCall call) {
  if (!events_.hasSession()) return;
  events_.add(SocialNetworkConnect{.socialNetwork = std::move(call.name)});
}

void EventLogic::perform(SocialNetworkPostCall call) {
  if (!events_.hasSession()) return;
  events_.add(SocialNetworkPost{.socialNetwork = std::move(call.name),
                                .postReason = std::move(call.reason)});
}

void EventLogic::perform(AdImpressionCall call) {
  if (!events_.hasSession()) return;
  events_.add(AdImpression{.network = std::move(call.network),
                           .placement = std::move(call.placement),
                           .unit = std::move(call.unit),
                           .revenue = call.revenue});
}

void EventLogic::perform(ReferrerCall call) {
  if (projectService_.isRefererSent()) {
    Logger::writeLog(PLRLogLevel::info, "The referrer has been sent");
    return;
  }
  if (!events_.hasSession()) return;
  const auto valueOf = [&](const char* property) -> std::optional<std::string> {
    const auto found = call.utmData.find(property);
    if (found == call.utmData.end()) return std::nullopt;
    return std::move(found->second);
  };
  // Not stamped: where the user came from has nothing to do with a progression.
  events_.addAsIs(Referral{.timestamp = events_.now(),
                           .sessionId = *stateManager_.getActiveUser()->sessionId,
                           .source = valueOf("source"),
                           .campaign = valueOf("campaign"),
                           .content = valueOf("content"),
                           .medium = valueOf("medium"),
                           .term = valueOf("term")});
  events_.sendBufferedEvents();
  projectService_.setIsRefererSent(true);  // After the event: a crash repeats it, and loses none.
}

}  // namespace pelorino
