#include "AnalyticsObserver.h"

#include <functional>
#include <utility>

#include "ExitGate.h"
#include "HostCall.h"
#include "QueueManager.h"

namespace pelorino {

void AnalyticsObserver::addIdentifiersListener(
    std::shared_ptr<PLRIdentifiersListener> identifiersListener) {
  if (identifiersListener) ExitGate::arm();
  identifiersListener_.set(std::move(identifiersListener));
  QueueManager::incomeQueue().addOperation([weak = weak_from_this()] {
    const auto self = weak.lock();
    if (!self) return;
    if (const auto broadcaster = self->logicBroadcaster_.lock()) broadcaster->forceUpdate();
  });
}

void AnalyticsObserver::addLogicBroadcaster(
    const std::shared_ptr<LogicBroadcasterProtocol>& logicBroadcaster) {
  logicBroadcaster_ = logicBroadcaster;
  logicBroadcaster->setOnBackendIdentifiersUpdate(
      [weak = weak_from_this()](std::optional<std::int64_t> pelorinoId) {
        if (!pelorinoId || *pelorinoId == 0) return;
        if (const auto self = weak.lock()) self->tellListener(*pelorinoId);
      });
}

void AnalyticsObserver::tellListener(std::int64_t pelorinoId) const {
  const ExitGate::Pass pass;  // The end of the listener is code of the host, too.
  const auto listener = identifiersListener_.get();
  if (!listener) return;
  callHost(std::function([&](std::int64_t id) { listener->didReceivePelorinoIdWith(id); }),
           pelorinoId);
}

}  // namespace pelorino
