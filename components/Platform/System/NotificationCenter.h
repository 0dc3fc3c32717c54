#pragma once

#include <memory>

#include "Block.h"

namespace pelorino {

/// What an application's system tells it about its place on the screen.
enum class ApplicationNotification {
  didBecomeActive,
  willResignActive,
  didEnterBackground,
  willTerminate,
};

/// Tells observers of the application's life cycle. All operations from any thread.
class NotificationCenter {
 public:
  /// Observes as long as it lives. Releasing it from within its own block is allowed; released
  /// from elsewhere, a block that has begun may still be running on the posting thread.
  class Observation {
   public:
    virtual ~Observation() = default;
  };

  virtual ~NotificationCenter() = default;

  [[nodiscard]] virtual std::unique_ptr<Observation> observe(ApplicationNotification name,
                                                             Block block) = 0;

  /// Runs the blocks of the observers on the calling thread, in the order of their registration,
  /// and returns when they have run. No lock is held meanwhile.
  virtual void post(ApplicationNotification name) = 0;
};

}  // namespace pelorino
