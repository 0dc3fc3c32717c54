#include <pelorino/PLRHost.h>

#include <optional>
#include <utility>

#include "Entry.h"
#include "Host.h"
#include "HostText.h"
#include "QueueManager.h"
#include "System.h"

using namespace pelorino;

namespace {

HostSize sizeOf(const PLRSize& size) {
  return {.width = size.width, .height = size.height};
}

std::optional<HostScreen> screenOf(const std::optional<PLRScreen>& screen) {
  if (!screen) return std::nullopt;
  return HostScreen{.bounds = sizeOf(screen->bounds),
                    .scale = screen->scale,
                    .nativeBounds = sizeOf(screen->nativeBounds)};
}

void post(ApplicationNotification notification) {
  System::current().notifications().post(notification);
}

/// Waits until all earlier calls have run, then posts. A start that has not run yet would not hear
/// the notification, and events reported before it would not be stored in time.
void postBehindAllCalls(ApplicationNotification notification) {
  QueueManager::incomeQueue().waitUntilAllOperationsAreFinished();
  post(notification);
}

}  // namespace

void PLRHost::describe(const PLRHostDescription& description) noexcept {
  enter("describe", [&] {
    // Texts that may be sent must be UTF-8. A path is bytes to the file system: repairing it would
    // name another file.
    Host::describe({.applicationName = repaired(description.applicationName),
                    .applicationVersion = repaired(description.applicationVersion),
                    .applicationBuildVersion = repaired(description.applicationBuildVersion),
                    .bundleIdentifier = repaired(description.bundleIdentifier),
                    .bundleFolder = description.bundleFolder,
                    .receiptFile = description.receiptFile,
                    .supportDirectory = description.supportDirectory,
                    .keyStoreFile = description.keyStoreFile,
                    .certificateAuthorityFile = description.certificateAuthorityFile,
                    .proxy = description.proxy,
                    .preferredLanguages = repaired(description.preferredLanguages),
                    .region = repaired(description.region),
                    .vendorIdentifier = repaired(description.vendorIdentifier),
                    .advertisingIdentifier = repaired(description.advertisingIdentifier),
                    .trackingAuthorization = description.trackingAuthorization,
                    .screen = screenOf(description.screen),
                    .machine = repaired(description.machine),
                    .systemVersion = repaired(description.systemVersion),
                    .integrityProbe = description.integrityProbe});
  });
}

void PLRHost::setApplicationState(PLRApplicationState state) noexcept {
  enter("setApplicationState",
        [&] { Host::setApplicationState(static_cast<ApplicationState>(state)); });
}

void PLRHost::setStore(std::shared_ptr<PLRStore> store) noexcept {
  enter("setStore", [&] { Host::setStore(std::move(store)); });
}

void PLRHost::didBecomeActive() noexcept {
  enter("didBecomeActive", [] {
    // The state first: a start that is about to wait for the notification reads it afterwards.
    Host::setApplicationState(ApplicationState::active);
    post(ApplicationNotification::didBecomeActive);
  });
}

void PLRHost::willResignActive() noexcept {
  enter("willResignActive", [] {
    Host::setApplicationState(ApplicationState::inactive);
    postBehindAllCalls(ApplicationNotification::willResignActive);
  });
}

void PLRHost::didEnterBackground() noexcept {
  enter("didEnterBackground", [] {
    Host::setApplicationState(ApplicationState::background);
    postBehindAllCalls(ApplicationNotification::didEnterBackground);
  });
}

void PLRHost::willTerminate() noexcept {
  enter("willTerminate", [] { postBehindAllCalls(ApplicationNotification::willTerminate); });
}
