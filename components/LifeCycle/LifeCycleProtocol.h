#pragma once

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

}  // namespace pelorino
