#pragma once

#include <atomic>
#include <memory>
#include <vector>

#include "Guarded.h"
#include "NotificationCenter.h"

namespace pelorino {

/// The notification centre of every system: it asks nothing of the operating system.
///
/// An observer that is added during a notification gets the next one; one that is removed meanwhile
/// is not called any more. An exception of a block goes to the poster, and the observers after it
/// are not called. Observations may outlive the hub.
///
/// Threads: any; an observer's block runs on the thread that posts.
class NotificationHub final : public NotificationCenter {
 public:
  [[nodiscard]] std::unique_ptr<Observation> observe(ApplicationNotification name,
                                                     Block block) override;
  void post(ApplicationNotification name) override;

 private:
  struct Observer {
    ApplicationNotification name;
    Block block;
    std::atomic<bool> isRemoved{false};
  };
  using Observers = Guarded<std::vector<std::shared_ptr<Observer>>>;
  class Registration;

  const std::shared_ptr<Observers> observers_ = std::make_shared<Observers>();
};

}  // namespace pelorino
