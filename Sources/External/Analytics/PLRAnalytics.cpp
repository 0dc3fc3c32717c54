// The operations on start, identity and support. Tracking is in PLRAnalyticsTracking.cpp.

#include <pelorino/PLRAnalytics.h>

#include <optional>
#include <utility>

#include "BackendConfigUrl.h"
#include "Front.h"
#include "Host.h"
#include "HostClosure.h"
#include "HostText.h"
#include "Logger.h"
#include "PLRAnalyticsConfigurationLocal.h"
#include "PlatformiOS.h"
#include "ResolvedHost.h"
#include "SQLiteProvider.h"

using namespace pelorino;

void PLRAnalytics::initialize(std::string_view applicationKey) noexcept {
  enter("initialize", [&] { Core::shared()->initialize(repaired(applicationKey), std::nullopt); });
}

void PLRAnalytics::initialize(std::string_view applicationKey,
                              const PLRAnalyticsConfiguration& configuration) noexcept {
  enter("initialize", [&] {
    Core::shared()->initialize(repaired(applicationKey), configuration.cloneToLocal());
  });
}

// The level is an atomic number: reading and writing it needs no guard against exceptions or forks.
PLRLogLevel PLRAnalytics::logLevel() noexcept {
  return Logger::logLevel();
}

void PLRAnalytics::setLogLevel(PLRLogLevel level) noexcept {
  Logger::setLogLevel(level);
}

std::function<void(const std::string&)> PLRAnalytics::loggerMessageClosure() {
  return enter("loggerMessageClosure", Logger::Closure(), Logger::loggerMessageClosure);
}

void PLRAnalytics::setLoggerMessageClosure(
    std::function<void(const std::string&)> closure) noexcept {
  enter("loggerMessageClosure", [&] { Logger::setLoggerMessageClosure(std::move(closure)); });
}

void PLRAnalytics::getDeviceId(std::function<void(const std::string&)> completionHandler) noexcept {
  ask<DeviceIdQuery>("getDeviceId", std::move(completionHandler));
}

void PLRAnalytics::getSDKVersion(
    std::function<void(const std::string&)> completionHandler) noexcept {
  ask<SDKVersionQuery>("getSDKVersion", std::move(completionHandler));
}

void PLRAnalytics::getTrackingAvailability(std::function<void(bool)> completionHandler) noexcept {
  ask<TrackingAvailabilityQuery>("getTrackingAvailability", std::move(completionHandler));
}

void PLRAnalytics::setTrackingAvailability(bool value) noexcept {
  submit("setTrackingAvailability", [&] { return SetTrackingAvailabilityCall{value}; });
}

void PLRAnalytics::getUserId(std::function<void(const std::string&)> completionHandler) noexcept {
  ask<UserIdQuery>("getUserId", std::move(completionHandler));
}

void PLRAnalytics::setUserId(std::string_view userId) noexcept {
  submit("setUserId", [&] { return SetUserIdCall{repaired(userId)}; });
}

void PLRAnalytics::replace(std::string_view fromUserId, std::string_view toUserId) noexcept {
  submit("replace", [&] { return ReplaceUserIdCall{repaired(fromUserId), repaired(toUserId)}; });
}

void PLRAnalytics::getCurrentLevel(std::function<void(std::int64_t)> completionHandler) noexcept {
  ask<CurrentLevelQuery>("getCurrentLevel", std::move(completionHandler));
}

void PLRAnalytics::setCurrentLevel(std::int64_t currentLevel) noexcept {
  submit("setCurrentLevel", [&] { return SetCurrentLevelCall{currentLevel}; });
}

void PLRAnalytics::setIdentifiersListener(
    std::shared_ptr<PLRIdentifiersListener> listener) noexcept {
  enter("setIdentifiersListener",
        [&] { Core::shared()->analyticsObserver().addIdentifiersListener(std::move(listener)); });
}

void PLRAnalytics::testLogs() noexcept {
  enter("testLogs", [] {
    Logger::writeLog(PLRLogLevel::error, "this is error message");
    Logger::writeLog(PLRLogLevel::warning, "this is warning message");
    Logger::writeLog(PLRLogLevel::info, "this is info message");
    Logger::writeLog(PLRLogLevel::debug, "this is debug message");
  });
}

void PLRAnalytics::setTestProxyUrl(std::string_view url) noexcept {
  enter("setTestProxyUrl", [&] { BackendConfigUrl::setTestProxyUrl(repaired(url)); });
}

void PLRAnalytics::getTestProxyUrl(
    const std::function<void(const std::string&)>& urlHandler) noexcept {
  enter("getTestProxyUrl", [&] { callHost(urlHandler, BackendConfigUrl::testProxyUrl()); });
}

void PLRAnalytics::setTestCustomUrl(std::string_view url) noexcept {
  enter("setTestCustomUrl", [&] { BackendConfigUrl::setTestCustomUrl(repaired(url)); });
}

void PLRAnalytics::getTestCustomUrl(
    const std::function<void(const std::string&)>& urlHandler) noexcept {
  enter("getTestCustomUrl", [&] { callHost(urlHandler, BackendConfigUrl::testCustomUrl()); });
}

std::string PLRAnalytics::sdkFolderPath() {
  return enter("sdkFolderPath", std::string("fileMessagerError"), [] {
    return SQLiteProvider::folderPath(Host::facts().supportDirectory())
        .value_or("fileMessagerError");
  });
}

void PLRAnalytics::clearKeychain() noexcept {
  enter("clearKeychain", [] { PlatformiOS::clearKeychain(); });
}
