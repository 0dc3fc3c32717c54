#include "LifeCycle.h"

#include <cstddef>

namespace pelorino {
namespace {

struct Transition {
  ApplicationNotification notification;
  void (LifeCycleProtocol::*operation)();
};

constexpr std::array<Transition, 4> transitions = {{
    {ApplicationNotification::didBecomeActive, &LifeCycleProtocol::goActive},
    {ApplicationNotification::willResignActive, &LifeCycleProtocol::goInactive},
    {ApplicationNotification::didEnterBackground, &LifeCycleProtocol::goBackground},
    {ApplicationNotification::willTerminate, &LifeCycleProtocol::goTerminate},
}};

}  // namespace

ApplicationLifeCycle::ApplicationLifeCycle(NotificationCenter& notifications) {
  for (std::size_t i = 0; i < transitions.size(); ++i) {
    const auto operation = transitions[i].operation;
    observations_[i] =
        notifications.observe(transitions[i].notification, [held = listener_, operation] {
          if (const auto listener = held->get().lock()) ((*listener).*operation)();
        });
  }
}

}  // namespace pelorino
