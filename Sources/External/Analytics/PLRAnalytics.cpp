#include <pelorino/PLRAnalytics.h>

#include <optional>
#include <utility>
#include <variant>

#include "AnyCodable.h"
#include "BackendConfigUrl.h"
#include "Core.h"
#include "Host.h"
#include "Logger.h"
#include "PLRAnalyticsConfigurationLocal.h"
#include "PlatformiOS.h"
#include "PublicCall.h"
#include "ResolvedHost.h"
#include "SQLiteProvider.h"
#include "Text.h"

using namespace pelorino;

namespace {

std::string copied(std::string_view text) {
  return repairUtf8(std::string(text));
}

PLRAnalyticsConfigurationLocal cloneToLocal(const PLRAnalyticsConfiguration& configuration) {
  PLRAnalyticsConfigurationLocal local;
  local.logLevel = configuration.logLevel;
  if (configuration.userId) local.userId = copied(*configuration.userId);
  local.level = configuration.currentLevel;
  local.trackingAvailability = configuration.trackingAvailability;
  return local;
}

AnyCodable::Object copied(const PLRCustomEventParameters& parameters) {
  AnyCodable::Object values;
  for (const auto& [key, value] : parameters.getAllParameters()) {
    values.insert_or_assign(copied(key),
                            std::visit([](const auto& plain) { return AnyCodable(plain); }, value));
  }
  return values;
}

AnalyticsProxy& proxyOf(const std::shared_ptr<Core>& core) {
  return core->analyticsProxy();
}

/// Hands a completion handler to a getter of the front.
template <class Handler>
void ask(const char* operation, void (AnalyticsProxy::*getter)(Handler), Handler handler) noexcept {
  publicCall(operation, [&] { (Core::shared()->analyticsProxy().*getter)(std::move(handler)); });
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
  publicCall("setTrackingAvailability",
             [&] { proxyOf(Core::shared()).setTrackingAvailability(value); });
}

void PLRAnalytics::getUserId(std::function<void(const std::string&)> completionHandler) noexcept {
  ask("getUserId", &AnalyticsProxy::getUserId, std::move(completionHandler));
}

void PLRAnalytics::setUserId(std::string_view userId) noexcept {
  publicCall("setUserId", [&] { proxyOf(Core::shared()).setUserId(copied(userId)); });
}

void PLRAnalytics::getCurrentLevel(std::function<void(std::int64_t)> completionHandler) noexcept {
  ask("getCurrentLevel", &AnalyticsProxy::getCurrentLevel, std::move(completionHandler));
}

void PLRAnalytics::setCurrentLevel(std::int64_t currentLevel) noexcept {
  publicCall("setCurrentLevel", [&] { proxyOf(Core::shared()).setCurrentLevel(currentLevel); });
}

void PLRAnalytics::setIdentifiersListener(
    std::shared_ptr<PLRIdentifiersListener> listener) noexcept {
  publicCall("setIdentifiersListener", [&] {
    Core::shared()->analyticsObserver().addIdentifiersListener(std::move(listener));
  });
}

void PLRAnalytics::customEvent(std::string_view eventName) noexcept {
  publicCall("customEvent", [&] { proxyOf(Core::shared()).customEvent(copied(eventName), {}); });
}

void PLRAnalytics::customEvent(std::string_view eventName,
                               const PLRCustomEventParameters& parameters) noexcept {
  publicCall("customEvent",
             [&] { proxyOf(Core::shared()).customEvent(copied(eventName), copied(parameters)); });
}

void PLRAnalytics::sendBufferedEvents() noexcept {
  publicCall("sendBufferedEvents", [] { proxyOf(Core::shared()).sendBufferedEvents(); });
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
  publicCall("getTestProxyUrl", [&] { urlHandler(BackendConfigUrl::testProxyUrl()); });
}

void PLRAnalytics::setTestCustomUrl(std::string_view url) noexcept {
  publicCall("setTestCustomUrl", [&] { BackendConfigUrl::setTestCustomUrl(copied(url)); });
}

void PLRAnalytics::getTestCustomUrl(
    const std::function<void(const std::string&)>& urlHandler) noexcept {
  publicCall("getTestCustomUrl", [&] { urlHandler(BackendConfigUrl::testCustomUrl()); });
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
