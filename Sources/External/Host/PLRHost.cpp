#include <pelorino/PLRHost.h>

#include <utility>

#include "Host.h"
#include "PublicCall.h"
#include "System.h"

using namespace pelorino;

namespace {

void moveTo(ApplicationState state, ApplicationNotification notification) {
  Host::setApplicationState(state);
  System::current().notifications().post(notification);
}

}  // namespace

void PLRHost::setApplicationState(PLRApplicationState state) noexcept {
  publicCall("setApplicationState",
             [&] { Host::setApplicationState(static_cast<ApplicationState>(state)); });
}

void PLRHost::didBecomeActive() noexcept {
  publicCall("didBecomeActive",
             [] { moveTo(ApplicationState::active, ApplicationNotification::didBecomeActive); });
}

void PLRHost::willResignActive() noexcept {
  publicCall("willResignActive", [] {
    moveTo(ApplicationState::inactive, ApplicationNotification::willResignActive);
  });
}

void PLRHost::didEnterBackground() noexcept {
  publicCall("didEnterBackground", [] {
    moveTo(ApplicationState::background, ApplicationNotification::didEnterBackground);
  });
}

void PLRHost::willTerminate() noexcept {
  publicCall("willTerminate", [] {
    System::current().notifications().post(ApplicationNotification::willTerminate);
  });
}
