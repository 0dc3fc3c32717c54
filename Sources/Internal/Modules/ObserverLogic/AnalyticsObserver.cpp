#include "AnalyticsObserver.h"

#include <utility>

#include "HostClosure.h"
#include "QueueManager.h"

namespace pelorino {

void AnalyticsObserver::addIdentifiersListener(
    std::shared_ptr<PLRIdentifiersListener> identifiersListener) {
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
  const auto held = identifiersListener_.get();
  if (!held) return;
  held->run([&](const auto& listener) { listener->didReceivePelorinoIdWith(pelorinoId); },
            logFailedHandler);
}

}  // namespace pelorino
