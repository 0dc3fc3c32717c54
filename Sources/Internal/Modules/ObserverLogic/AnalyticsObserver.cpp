#include "AnalyticsObserver.h"

#include <utility>

#include "HostClosure.h"

namespace pelorino {

void AnalyticsObserver::addIdentifiersListener(
    std::shared_ptr<PLRIdentifiersListener> identifiersListener) {
  identifiersListener_.set(std::move(identifiersListener));
  enqueue([](LogicBroadcasterProtocol* broadcaster) {
    if (broadcaster != nullptr) broadcaster->forceUpdate();
  });
}

void AnalyticsObserver::addLogicBroadcaster(LogicBroadcasterProtocol* logicBroadcaster) {
  setLogic(logicBroadcaster);
  if (logicBroadcaster == nullptr) return;
  logicBroadcaster->onBackendIdentifiersUpdate = [this](std::optional<std::int64_t> pelorinoId) {
    if (pelorinoId && *pelorinoId != 0) tellListener(*pelorinoId);  // 0 is no identifier.
  };
}

void AnalyticsObserver::tellListener(std::int64_t pelorinoId) const {
  const auto held = identifiersListener_.get();
  if (!held) return;
  held->run([&](const auto& listener) { listener->didReceivePelorinoIdWith(pelorinoId); },
            logFailedHandler);
}

}  // namespace pelorino
