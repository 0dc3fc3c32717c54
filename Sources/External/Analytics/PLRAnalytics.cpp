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
#include "StoreValues.h"
#include "Text.h"

using namespace pelorino;

namespace {

std::string copied(std::string_view text) {
  return repairUtf8(std::string(text));
}

PLRAnalyticsConfigurationLocal cloneToLocal(const PLRAnalyticsConfiguration& configuration) {
  PLRAnalyticsConfigurationLocal local;
  local.logLevel = configuration.logLevel;
  if (configuration.userId) local.userId = copied(std::string_view(*configuration.userId));
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

Resources copied(const Resources& resources) {
  Resources values;
  for (const auto& [name, amount] : resources) values.insert_or_assign(copied(name), amount);
  return values;
}

template <class Text>
std::optional<std::string> copied(const std::optional<Text>& text) {
  if (!text) return std::nullopt;
  return copied(*text);
}

AnalyticsProxy& proxyOf(const std::shared_ptr<Core>& core) {
  return core->analyticsProxy();
}

/// Hands a call to the front.
template <class Call>
void report(const char* operation, void (AnalyticsProxy::*tracking)(Call), auto makeCall) noexcept {
  publicCall(operation, [&] { (Core::shared()->analyticsProxy().*tracking)(makeCall()); });
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

void PLRAnalytics::levelUp(std::int64_t level) noexcept {
  levelUp(level, {});
}

void PLRAnalytics::levelUp(std::int64_t level, const Resources& balances) noexcept {
  report("levelUp", &AnalyticsProxy::levelUp, [&] { return LevelUpCall{level, copied(balances)}; });
}

void PLRAnalytics::currentBalance(const Resources& balance) noexcept {
  report("currentBalance", &AnalyticsProxy::currentBalance, [&] { return copied(balance); });
}

void PLRAnalytics::customEvent(std::string_view eventName) noexcept {
  report("customEvent", &AnalyticsProxy::customEvent, [&] {
    return CustomEventCall{copied(eventName), {}};
  });
}

void PLRAnalytics::customEvent(std::string_view eventName,
                               const PLRCustomEventParameters& parameters) noexcept {
  report("customEvent", &AnalyticsProxy::customEvent, [&] {
    return CustomEventCall{copied(eventName), copied(parameters)};
  });
}

void PLRAnalytics::virtualCurrencyPayment(std::string_view purchaseId,
                                          std::string_view purchaseType,
                                          std::int64_t purchaseAmount,
                                          const Resources& resources) noexcept {
  report("virtualCurrencyPayment", &AnalyticsProxy::virtualCurrencyPayment, [&] {
    return VirtualCurrencyPaymentCall{copied(purchaseId), copied(purchaseType), purchaseAmount,
                                      copied(resources)};
  });
}

void PLRAnalytics::virtualCurrencyPayment(std::string_view purchaseId,
                                          std::string_view purchaseType,
                                          std::int64_t purchaseAmount, std::int64_t purchasePrice,
                                          std::string_view purchaseCurrency) noexcept {
  report("virtualCurrencyPayment", &AnalyticsProxy::virtualCurrencyPayment, [&] {
    return VirtualCurrencyPaymentCall{copied(purchaseId),
                                      copied(purchaseType),
                                      purchaseAmount,
                                      {{copied(purchaseCurrency), purchasePrice}}};
  });
}

void PLRAnalytics::currencyAccrual(std::string_view currencyName, std::int64_t currencyAmount,
                                   std::string_view source, PLRAccrualType accrualType) noexcept {
  report("currencyAccrual", &AnalyticsProxy::currencyAccrual, [&] {
    return CurrencyAccrualCall{copied(currencyName), currencyAmount, copied(source), accrualType};
  });
}

void PLRAnalytics::startProgressionEvent(std::string_view eventName) noexcept {
  startProgressionEvent(eventName, {});
}

void PLRAnalytics::startProgressionEvent(
    std::string_view eventName, const PLRStartProgressionEventParameters& parameters) noexcept {
  report("startProgressionEvent", &AnalyticsProxy::startProgressionEvent, [&] {
    return StartProgressionEventCall{copied(eventName),
                                     {parameters.difficulty, copied(parameters.source)}};
  });
}

void PLRAnalytics::finishProgressionEvent(std::string_view eventName) noexcept {
  PLRFinishProgressionEventParameters parameters;
  parameters.successfulCompletion = true;
  finishProgressionEvent(eventName, parameters);
}

void PLRAnalytics::finishProgressionEvent(
    std::string_view eventName, const PLRFinishProgressionEventParameters& parameters) noexcept {
  report("finishProgressionEvent", &AnalyticsProxy::finishProgressionEvent, [&] {
    return FinishProgressionEventCall{copied(eventName),
                                      {parameters.successfulCompletion, parameters.duration,
                                       copied(parameters.spent), copied(parameters.earned)}};
  });
}

void PLRAnalytics::realCurrencyPayment(std::string_view orderId, double price,
                                       std::string_view productId,
                                       std::string_view currencyCode) noexcept {
  report("realCurrencyPayment", &AnalyticsProxy::realCurrencyPayment, [&] {
    return RealCurrencyPaymentCall{copied(orderId), price, copied(productId), copied(currencyCode)};
  });
}

void PLRAnalytics::isRestoreTransactionHistoryRequired(
    std::function<void(bool)> completionHandler) noexcept {
  ask("isRestoreTransactionHistoryRequired", &AnalyticsProxy::isRestoreTransactionHistoryRequired,
      std::move(completionHandler));
}

void PLRAnalytics::subscriptionHistory(
    const std::vector<SKPaymentTransaction>& transactions) noexcept {
  report<SubscriptionHistoryCall>("subscriptionHistory", &AnalyticsProxy::subscriptionHistory, [&] {
    SubscriptionHistoryCall call;
    for (const SKPaymentTransaction& transaction : transactions) {
      call.push_back(repaired(transaction));
    }
    return call;
  });
}

void PLRAnalytics::subscriptionPayment(const SKPaymentTransaction& transaction,
                                       const SKProduct& product) noexcept {
  report<SubscriptionPaymentCall>("subscriptionPayment", &AnalyticsProxy::subscriptionPayment, [&] {
    return SubscriptionPaymentCall{repaired(transaction), repaired(product)};
  });
}

void PLRAnalytics::socialNetworkConnect(const PLRSocialNetwork& socialNetwork) noexcept {
  report("socialNetworkConnect", &AnalyticsProxy::socialNetworkConnect,
         [&] { return copied(socialNetwork.name()); });
}

void PLRAnalytics::socialNetworkPost(const PLRSocialNetwork& socialNetwork,
                                     std::string_view reason) noexcept {
  report("socialNetworkPost", &AnalyticsProxy::socialNetworkPost, [&] {
    return SocialNetworkPostCall{copied(socialNetwork.name()), copied(reason)};
  });
}

void PLRAnalytics::tutorial(std::int64_t step) noexcept {
  report("tutorial", &AnalyticsProxy::tutorial, [&] { return step; });
}

void PLRAnalytics::referrer(const std::map<PLRReferralProperty, std::string>& utmData) noexcept {
  report("referrer", &AnalyticsProxy::referrer, [&] {
    ReferrerCall call;
    for (const auto& [property, value] : utmData) {
      call.insert_or_assign(copied(property.name()), copied(value));
    }
    return call;
  });
}

void PLRAnalytics::adImpression(std::string_view network, double revenue,
                                std::optional<std::string_view> placement,
                                std::optional<std::string_view> unit) noexcept {
  report("adImpression", &AnalyticsProxy::adImpression, [&] {
    return AdImpressionCall{copied(network), revenue, copied(placement), copied(unit)};
  });
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
