// The start, identity, and support.

#include <pelorino/PLRAnalytics.h>

#include <optional>
#include <utility>

#include "BackendConfigUrl.h"
#include "FrontCall.h"
#include "Host.h"
#include "HostClosure.h"
#include "HostText.h"
#include "Logger.h"
#include "PLRAnalyticsConfigurationLocal.h"
#include "PlatformiOS.h"
#include "ResolvedHost.h"
#include "SQLiteProvider.h"

using namespace pelorino;

namespace {

PLRAnalyticsConfigurationLocal cloneToLocal(const PLRAnalyticsConfiguration& configuration) {
  PLRAnalyticsConfigurationLocal local;
  local.logLevel = configuration.logLevel;
  if (configuration.userId) local.userId = copied(*configuration.userId);
  local.level = configuration.currentLevel;
  local.trackingAvailability = configuration.trackingAvailability;
  return local;
}

}  // namespace

void PLRAnalytics::initialize(std::string_view applicationKey) noexcept {
  publicCall("initialize",
             [&] { Core::shared()->initialize(copied(applicationKey), std::nullopt); });
}

void PLRAnalytics::initialize(std::string_view applicationKey,
                              const PLRAnalyticsConfiguration& configuration) noexcept {
  publicCall("initialize", [&] {
    Core::shared()->initialize(copied(applicationKey), cloneToLocal(configuration));
  });
}

PLRLogLevel PLRAnalytics::logLevel() noexcept {
  return Logger::logLevel();
}

void PLRAnalytics::setLogLevel(PLRLogLevel level) noexcept {
  Logger::setLogLevel(level);
}

std::function<void(const std::string&)> PLRAnalytics::loggerMessageClosure() {
  return publicCall("loggerMessageClosure", Logger::Closure(), Logger::loggerMessageClosure);
}

void PLRAnalytics::setLoggerMessageClosure(
    std::function<void(const std::string&)> closure) noexcept {
  publicCall("loggerMessageClosure", [&] { Logger::setLoggerMessageClosure(std::move(closure)); });
}

void PLRAnalytics::getDeviceId(std::function<void(const std::string&)> completionHandler) noexcept {
  ask("getDeviceId", &AnalyticsProxy::getDeviceId, std::move(completionHandler));
}

void PLRAnalytics::getSDKVersion(
    std::function<void(const std::string&)> completionHandler) noexcept {
  ask("getSDKVersion", &AnalyticsProxy::getSDKVersion, std::move(completionHandler));
}

void PLRAnalytics::getTrackingAvailability(std::function<void(bool)> completionHandler) noexcept {
  ask("getTrackingAvailability", &AnalyticsProxy::getTrackingAvailability,
      std::move(completionHandler));
}

void PLRAnalytics::setTrackingAvailability(bool value) noexcept {
  report("setTrackingAvailability", &AnalyticsProxy::setTrackingAvailability,
         [&] { return value; });
}

void PLRAnalytics::getUserId(std::function<void(const std::string&)> completionHandler) noexcept {
  ask("getUserId", &AnalyticsProxy::getUserId, std::move(completionHandler));
}

void PLRAnalytics::setUserId(std::string_view userId) noexcept {
  report("setUserId", &AnalyticsProxy::setUserId, [&] { return copied(userId); });
}

void PLRAnalytics::replace(std::string_view fromUserId, std::string_view toUserId) noexcept {
  report("replace", &AnalyticsProxy::replaceUserId, [&] {
    return ReplaceUserIdCall{copied(fromUserId), copied(toUserId)};
  });
}

void PLRAnalytics::getCurrentLevel(std::function<void(std::int64_t)> completionHandler) noexcept {
  ask("getCurrentLevel", &AnalyticsProxy::getCurrentLevel, std::move(completionHandler));
}

void PLRAnalytics::setCurrentLevel(std::int64_t currentLevel) noexcept {
  report("setCurrentLevel", &AnalyticsProxy::setCurrentLevel, [&] { return currentLevel; });
}

void PLRAnalytics::setIdentifiersListener(
    std::shared_ptr<PLRIdentifiersListener> listener) noexcept {
  publicCall("setIdentifiersListener", [&] {
    Core::shared()->analyticsObserver().addIdentifiersListener(std::move(listener));
  });
}

void PLRAnalytics::testLogs() noexcept {
  publicCall("testLogs", [] {
    Logger::writeLog(PLRLogLevel::error, "this is error message");
    Logger::writeLog(PLRLogLevel::warning, "this is warning message");
    Logger::writeLog(PLRLogLevel::info, "this is info message");
    Logger::writeLog(PLRLogLevel::debug, "this is debug message");
  });
}

void PLRAnalytics::setTestProxyUrl(std::string_view url) noexcept {
  publicCall("setTestProxyUrl", [&] { BackendConfigUrl::setTestProxyUrl(copied(url)); });
}

void PLRAnalytics::getTestProxyUrl(
    const std::function<void(const std::string&)>& urlHandler) noexcept {
  publicCall("getTestProxyUrl", [&] { callHost(urlHandler, BackendConfigUrl::testProxyUrl()); });
}

void PLRAnalytics::setTestCustomUrl(std::string_view url) noexcept {
  publicCall("setTestCustomUrl", [&] { BackendConfigUrl::setTestCustomUrl(copied(url)); });
}

void PLRAnalytics::getTestCustomUrl(
    const std::function<void(const std::string&)>& urlHandler) noexcept {
  publicCall("getTestCustomUrl", [&] { callHost(urlHandler, BackendConfigUrl::testCustomUrl()); });
}

std::string PLRAnalytics::sdkFolderPath() {
  return publicCall("sdkFolderPath", std::string("fileMessagerError"), [] {
    return SQLiteProvider::folderPath(Host::facts().supportDirectory())
        .value_or("fileMessagerError");
  });
}

void PLRAnalytics::clearKeychain() noexcept {
  publicCall("clearKeychain", [] { PlatformiOS::clearKeychain(); });
}
