#pragma once

#include <array>
#include <memory>
#include <utility>

#include "Guarded.h"
#include "NotificationCenter.h"

namespace pelorino {

/// Listens to the application's life cycle. Called on the thread that posts the notification, the
/// host's own as a rule.
class LifeCycleProtocol {
 public:
  virtual ~LifeCycleProtocol() = default;

  virtual void goActive() = 0;
  virtual void goInactive() = 0;
  virtual void goBackground() = 0;
  virtual void goTerminate() = 0;
};

/// Turns the four notifications of the application's life cycle into calls on a listener, from its
/// creation to its end. Without a listener a notification does nothing.
///
/// Threads: any. A listener that is replaced during a notification may still get that one call; so
/// may the listener of an object that is destroyed meanwhile.
class ApplicationLifeCycle final {
 public:
  explicit ApplicationLifeCycle(NotificationCenter& notifications);

  void setLifeCycleListener(std::weak_ptr<LifeCycleProtocol> listener) {
    listener_->set(std::move(listener));
  }

 private:
  using Listener = Guarded<std::weak_ptr<LifeCycleProtocol>>;

  // Shared with the observing blocks: one of them may be running when this object ends.
  std::shared_ptr<Listener> listener_ = std::make_shared<Listener>();
  std::array<std::unique_ptr<NotificationCenter::Observation>, 4> observations_;
};

/// Where a listener to the application's life cycle is set. Any thread.
class LifeCycleRepository final {
 public:
  explicit LifeCycleRepository(NotificationCenter& notifications) : lifecycle_(notifications) {}

  /// Replaces the listener, which is held weakly. An empty one ends listening.
  void setLifeCycleListener(std::weak_ptr<LifeCycleProtocol> listener) {
    lifecycle_.setLifeCycleListener(std::move(listener));
  }

 private:
  ApplicationLifeCycle lifecycle_;
};

}  // namespace pelorino
