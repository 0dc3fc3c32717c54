#include <pelorino/PLRHost.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Host.h"
#include "PublicCall.h"
#include "QueueManager.h"
#include "System.h"
#include "Text.h"

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

std::optional<std::string> copied(std::optional<std::string> text) {
  if (text) *text = repairUtf8(std::move(*text));
  return text;
}

std::optional<std::vector<std::string>> copied(std::optional<std::vector<std::string>> texts) {
  if (!texts) return texts;
  for (std::string& text : *texts) text = repairUtf8(std::move(text));
  return texts;
}

void post(ApplicationNotification notification) {
  System::current().notifications().post(notification);
}

/// Everything handed over before has run when this posts: a library that is still starting would
/// not hear of the notification, and what was reported to it would not be stored.
void postBehindAllCalls(ApplicationNotification notification) {
  QueueManager::incomeQueue().waitUntilAllOperationsAreFinished();
  post(notification);
}

}  // namespace

void PLRHost::describe(const PLRHostDescription& description) noexcept {
  publicCall("describe", [&] {
    // Paths are bytes to the file system and stay as they are; everything else may be sent.
    Host::describe({.applicationName = copied(description.applicationName),
                    .applicationVersion = copied(description.applicationVersion),
                    .applicationBuildVersion = copied(description.applicationBuildVersion),
                    .bundleIdentifier = copied(description.bundleIdentifier),
                    .bundleFolder = description.bundleFolder,
                    .receiptFile = description.receiptFile,
                    .supportDirectory = description.supportDirectory,
                    .keyStoreFile = description.keyStoreFile,
                    .certificateAuthorityFile = description.certificateAuthorityFile,
                    .proxy = description.proxy,
                    .preferredLanguages = copied(description.preferredLanguages),
                    .region = copied(description.region),
                    .vendorIdentifier = copied(description.vendorIdentifier),
                    .advertisingIdentifier = copied(description.advertisingIdentifier),
                    .trackingAuthorization = description.trackingAuthorization,
                    .screen = screenOf(description.screen),
                    .machine = copied(description.machine),
                    .systemVersion = copied(description.systemVersion),
                    .integrityProbe = description.integrityProbe});
  });
}

void PLRHost::setApplicationState(PLRApplicationState state) noexcept {
  publicCall("setApplicationState",
             [&] { Host::setApplicationState(static_cast<ApplicationState>(state)); });
}

void PLRHost::setStore(std::shared_ptr<PLRStore> store) noexcept {
  publicCall("setStore", [&] { Host::setStore(std::move(store)); });
}

void PLRHost::didBecomeActive() noexcept {
  publicCall("didBecomeActive", [] {
    Host::setApplicationState(ApplicationState::active);
    post(ApplicationNotification::didBecomeActive);
  });
}

void PLRHost::willResignActive() noexcept {
  publicCall("willResignActive", [] {
    Host::setApplicationState(ApplicationState::inactive);
    postBehindAllCalls(ApplicationNotification::willResignActive);
  });
}

void PLRHost::didEnterBackground() noexcept {
  publicCall("didEnterBackground", [] {
    Host::setApplicationState(ApplicationState::background);
    postBehindAllCalls(ApplicationNotification::didEnterBackground);
  });
}

void PLRHost::willTerminate() noexcept {
  publicCall("willTerminate", [] { postBehindAllCalls(ApplicationNotification::willTerminate); });
}
