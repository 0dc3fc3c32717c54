#include "AnalyticsProxy.h"

#include <fmt/format.h>

#include <functional>
#include <optional>
#include <utility>

#include "Config.h"
#include "HostClosure.h"
#include "Logger.h"
#include "QueueManager.h"
#include "Validator.h"
#include "ValidatorRules.h"

namespace pelorino {
namespace {

// What the backend may have switched off: never, the event, the event with one value of the call,
// as the host gave it or as the rule repaired it. Each takes the call as it came in and returns
// what judges the repaired one, so that the rule can have the call itself instead of a copy.

constexpr auto never = [](const auto&) { return [](const auto&) { return false; }; };

auto event(const char* code) {
  return
      [code](const auto&) { return [code](const auto&) { return Validator::isExcluded(code); }; };
}

template <class Value>
auto eventWithGiven(const char* code, Value value) {
  return [code, value](const auto& call) {
    return [code, given = AnyCodable(value(call))](const auto&) {
      return Validator::isExcluded(code, given);
    };
  };
}

template <class Value>
auto eventWithValid(const char* code, Value value) {
  return [code, value](const auto&) {
    return [code, value](const auto& valid) {
      return Validator::isExcluded(code, AnyCodable(value(valid)));
    };
  };
}

constexpr auto noRule = [](auto call) { return std::optional(std::move(call)); };

}  // namespace

void AnalyticsProxy::initialize(std::shared_ptr<AnalyticsProtocol> analyticsLogic) {
  analyticsLogic_.set(std::move(analyticsLogic));
}

template <class Work>
void AnalyticsProxy::post(const char* label, Work work) {
  QueueManager::incomeQueue().addOperation(
      [weak = weak_from_this(), label, work = std::move(work)]() mutable {
        const auto self = weak.lock();
        if (!self) return;
        const Logic logic = self->analyticsLogic_.get();
        work(validateInitialization(label, logic != nullptr) ? logic.get() : nullptr);
      });
}

template <class Work>
void AnalyticsProxy::perform(const char* label, Work work) {
  post(label, [work = std::move(work)](AnalyticsProtocol* logic) mutable {
    if (logic != nullptr) work(*logic);
  });
}

template <class Handler, class Fallback>
void AnalyticsProxy::answer(const char* label, Handler completionHandler,
                            void (AnalyticsProtocol::*getter)(Handler), Fallback fallback) {
  post(label, [handler = std::move(completionHandler), getter,
               fallback = std::move(fallback)](AnalyticsProtocol* logic) mutable {
    if (logic == nullptr) return callHost(handler, fallback);
    (logic->*getter)(std::move(handler));
  });
}

template <class Call, class Rule, class Exclusion>
void AnalyticsProxy::track(const char* label, Call call, Rule rule, Exclusion exclusion,
                           void (AnalyticsProtocol::*operation)(Call)) {
  perform(label,
          [call = std::move(call), rule, exclusion, operation](AnalyticsProtocol& logic) mutable {
            const auto isExcluded = exclusion(call);
            std::optional<Call> valid = rule(std::move(call));
            if (!valid || isExcluded(*valid)) return;
            (logic.*operation)(std::move(*valid));
          });
}

bool AnalyticsProxy::validateInitialization(std::string_view label, bool isInitialized) {
  if (isInitialized) return true;
  Logger::writeLog(PLRLogLevel::error, [&] {
    return fmt::format("In the {} method an error has occurred: The SDK is not initialized yet!",
                       label);
  });
  return false;
}

void AnalyticsProxy::isInited(BoolHandler completionHandler) {
  QueueManager::incomeQueue().addOperation(
      [weak = weak_from_this(), completionHandler = std::move(completionHandler)] {
        if (const auto self = weak.lock()) {
          callHost(completionHandler, self->analyticsLogic_.get() != nullptr);
        }
      });
}

void AnalyticsProxy::stopSDK() {
  if (const Logic logic = analyticsLogic_.get()) logic->stopSDK();
}

void AnalyticsProxy::getDeviceId(TextHandler completionHandler) {
  answer("getDeviceId(_:)", std::move(completionHandler), &AnalyticsProtocol::getDeviceId,
         std::string());
}

void AnalyticsProxy::getSDKVersion(TextHandler completionHandler) {
  answer("getSDKVersion(_:)", std::move(completionHandler), &AnalyticsProtocol::getSDKVersion,
         std::string());
}

void AnalyticsProxy::getTrackingAvailability(BoolHandler completionHandler) {
  answer("getTrackingAvailability(_:)", std::move(completionHandler),
         &AnalyticsProtocol::getTrackingAvailability, false);
}

void AnalyticsProxy::setTrackingAvailability(bool value) {
  perform("setTrackingAvailability(_:)",
          [value](AnalyticsProtocol& logic) { logic.setTrackingAvailability(value); });
}

void AnalyticsProxy::getUserId(TextHandler completionHandler) {
  answer("getUserId(_:)", std::move(completionHandler), &AnalyticsProtocol::getUserId,
         std::string());
}

void AnalyticsProxy::setUserId(std::string userId) {
  const auto rule = [](std::string id) {
    constexpr const char* method = "SetUserId";
    auto valid = ValidatorRules::validateUserId(method, std::move(id));
    if (!valid) ValidatorRules::notifyThatMethodExecutionWasCanceled(method);
    return valid;
  };
  track("setUserId(_:)", std::move(userId), rule, never, &AnalyticsProtocol::setUserId);
}

void AnalyticsProxy::replaceUserId(ReplaceUserIdCall call) {
  track("replaceUserId(_:_:)", std::move(call), ValidatorRules::validateReplaceUserId, never,
        &AnalyticsProtocol::replaceUserId);
}

void AnalyticsProxy::getCurrentLevel(IntegerHandler completionHandler) {
  answer("getCurrentLevel(_:)", std::move(completionHandler), &AnalyticsProtocol::getCurrentLevel,
         std::int64_t{1});
}

void AnalyticsProxy::setCurrentLevel(std::int64_t currentLevel) {
  track("setCurrentLevel(_:)", currentLevel, ValidatorRules::validateCurrentLevel, never,
        &AnalyticsProtocol::setCurrentLevel);
}

void AnalyticsProxy::levelUp(LevelUpCall call) {
  track("levelUp(_:_:)", std::move(call), ValidatorRules::validateLevelUp, event("lu"),
        &AnalyticsProtocol::levelUp);
}

void AnalyticsProxy::currentBalance(Resources balance) {
  track("currentBalance(_:)", std::move(balance), ValidatorRules::validateCurrentBalance,
        event("cb"), &AnalyticsProtocol::currentBalance);
}

void AnalyticsProxy::customEvent(CustomEventCall call) {
  track("customEvent(_:_:)", std::move(call), ValidatorRules::validateCustomEvent,
        eventWithGiven("ce", [](const auto& given) { return given.name; }),
        &AnalyticsProtocol::customEvent);
}

void AnalyticsProxy::currencyAccrual(CurrencyAccrualCall call) {
  track("currencyAccrual(_:_:_:_:)", std::move(call), ValidatorRules::validateCurrencyAccrual,
        eventWithGiven("ca", [](const auto& given) { return given.source; }),
        &AnalyticsProtocol::currencyAccrual);
}

void AnalyticsProxy::virtualCurrencyPayment(VirtualCurrencyPaymentCall call) {
  track("virtualCurrencyPayment(_:_:_:_:)", std::move(call),
        ValidatorRules::validateVirtualCurrencyPayment,
        eventWithGiven("vp", [](const auto& given) { return given.purchaseId; }),
        &AnalyticsProtocol::virtualCurrencyPayment);
}

void AnalyticsProxy::realCurrencyPayment(RealCurrencyPaymentCall call) {
  track("realCurrencyPayment(_:_:_:_:)", std::move(call),
        ValidatorRules::validateRealCurrencyPayment, event("rp"),
        &AnalyticsProtocol::realCurrencyPayment);
}

void AnalyticsProxy::startProgressionEvent(StartProgressionEventCall call) {
  track("startProgressionEvent(_:_:)", std::move(call),
        ValidatorRules::validateStartProgressionEvent,
        eventWithGiven("pe", [](const auto& given) { return given.eventName; }),
        &AnalyticsProtocol::startProgressionEvent);
}

void AnalyticsProxy::finishProgressionEvent(FinishProgressionEventCall call) {
  track("finishProgressionEvent(_:_:)", std::move(call),
        ValidatorRules::validateFinishProgressionEvent,
        eventWithGiven("pe", [](const auto& given) { return given.eventName; }),
        &AnalyticsProtocol::finishProgressionEvent);
}

void AnalyticsProxy::tutorial(std::int64_t step) {
  track("tutorial(_:)", step, ValidatorRules::validateTutorial,
        eventWithGiven("tr", [](const auto& given) { return given; }),
        &AnalyticsProtocol::tutorial);
}

void AnalyticsProxy::socialNetworkConnect(std::string name) {
  track("socialNetworkConnect(_:)", std::move(name), ValidatorRules::validateSocialNetworkConnect,
        eventWithValid("sc", [](const auto& valid) { return valid; }),
        &AnalyticsProtocol::socialNetworkConnect);
}

void AnalyticsProxy::socialNetworkPost(SocialNetworkPostCall call) {
  track("socialNetworkPost(_:_:)", std::move(call), ValidatorRules::validateSocialNetworkPost,
        eventWithValid("sp", [](const auto& valid) { return valid.name; }),
        &AnalyticsProtocol::socialNetworkPost);
}

void AnalyticsProxy::referrer(ReferrerCall utmData) {
  track("referrer(_:)", std::move(utmData), ValidatorRules::validateReferrer, event("rf"),
        &AnalyticsProtocol::referrer);
}

void AnalyticsProxy::isRestoreTransactionHistoryRequired(BoolHandler completionHandler) {
  answer("isRestoreTransactionHistoryRequired(_:)", std::move(completionHandler),
         &AnalyticsProtocol::isRestoreTransactionHistoryRequired, false);
}

void AnalyticsProxy::subscriptionPayment(SubscriptionPaymentCall call) {
  track("subscriptionPayment(_:_:)", std::move(call), noRule, event("sbs"),
        &AnalyticsProtocol::subscriptionPayment);
}

void AnalyticsProxy::subscriptionPayment(EngineSubscriptionPaymentCall call) {
  // Unlike everywhere else, an excluded call is dropped before the rule says what is wrong with it.
  const auto rule = [](EngineSubscriptionPaymentCall given) {
    return Validator::isExcluded("sbs")
               ? std::nullopt
               : ValidatorRules::validateSubscriptionPayment(std::move(given));
  };
  track("subscriptionPayment(_:_:)", std::move(call), rule, never,
        &AnalyticsProtocol::subscriptionPayment);
}

void AnalyticsProxy::subscriptionHistory(SubscriptionHistoryCall transactions) {
  track("subscriptionHistory(_:)", std::move(transactions), noRule, event("sbsr"),
        &AnalyticsProtocol::subscriptionHistory);
}

void AnalyticsProxy::subscriptionHistory(EngineSubscriptionHistoryCall transactions) {
  track("subscriptionHistory(_:)", std::move(transactions), noRule, event("sbsr"),
        &AnalyticsProtocol::subscriptionHistory);
}

void AnalyticsProxy::adImpression(AdImpressionCall call) {
  track("adImpression(_:_:_:_:)", std::move(call), ValidatorRules::validateAdImpression,
        event("adrv"), &AnalyticsProtocol::adImpression);
}

void AnalyticsProxy::sendBufferedEvents() {
  perform("sendBufferedEvents()", [](AnalyticsProtocol& logic) { logic.sendBufferedEvents(); });
}

std::int64_t AnalyticsProxy::getCustomEventParamsCount() {
  const Logic logic = analyticsLogic_.get();
  return logic ? logic->getCustomEventParamsCount()
               : Config::defaulConfiguration().eventParamsCount;
}

}  // namespace pelorino
