#include "AnalyticsObserver.h"

#include <functional>
#include <utility>

#include "ExitGate.h"
#include "HostCall.h"

namespace pelorino {

void AnalyticsObserver::addIdentifiersListener(
    std::shared_ptr<PLRIdentifiersListener> identifiersListener) {
  if (identifiersListener) ExitGate::arm();
  identifiersListener_.set(std::move(identifiersListener));
  enqueue([](LogicBroadcasterProtocol* broadcaster) {
    if (broadcaster != nullptr) broadcaster->forceUpdate();
  });
}

void AnalyticsObserver::addLogicBroadcaster(LogicBroadcasterProtocol* logicBroadcaster) {
  setLogic(logicBroadcaster);
  if (logicBroadcaster == nullptr) return;
  logicBroadcaster->onBackendIdentifiersUpdate = [this](std::optional<std::int64_t> pelorinoId) {
    if (pelorinoId && *pelorinoId != 0) tellListener(*pelorinoId);
  };
}

void AnalyticsObserver::tellListener(std::int64_t pelorinoId) const {
  const ExitGate::Pass pass;  // The end of the listener is code of the host, too.
  const auto listener = identifiersListener_.get();
  if (!listener) return;
  callHost(std::function([&](std::int64_t id) { listener->didReceivePelorinoIdWith(id); }),
           pelorinoId);
}

}  // namespace pelorino
