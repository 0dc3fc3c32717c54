#pragma once

#include <array>
#include <memory>

#include "Guarded.h"
#include "LifeCycleProtocol.h"
#include "NotificationCenter.h"

namespace pelorino {

/// Turns the four notifications of the application's life cycle into calls on a listener, from its
/// creation to its end. Without a listener a notification does nothing.
///
/// Threads: any. A listener that is replaced, or an object that ends, while a notification is under
/// way may still get that one call.
class ApplicationLifeCycle final {
 public:
  explicit ApplicationLifeCycle(NotificationCenter& notifications);

  /// The listener is held weakly.
  void setLifeCycleListener(std::weak_ptr<LifeCycleProtocol> listener);

 private:
  using Listener = Guarded<std::weak_ptr<LifeCycleProtocol>>;

  // Shared with the observing blocks: one of them may be running when this object ends.
  std::shared_ptr<Listener> listener_ = std::make_shared<Listener>();
  std::array<std::unique_ptr<NotificationCenter::Observation>, 4> observations_;
};

}  // namespace pelorino
