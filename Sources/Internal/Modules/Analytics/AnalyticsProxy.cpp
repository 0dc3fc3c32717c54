#include "AnalyticsProxy.h"

#include <utility>

#include "Config.h"
#include "HostCall.h"
#include "Logger.h"
#include "QueueManager.h"
#include "Validator.h"
#include "ValidatorRules.h"

namespace pelorino {

void AnalyticsProxy::initialize(std::shared_ptr<AnalyticsProtocol> analyticsLogic) {
  analyticsLogic_.set(std::move(analyticsLogic));
}

template <class Work, class Refuse>
void AnalyticsProxy::perform(const char* label, Work work, Refuse refuse) {
  QueueManager::incomeQueue().addOperation([weak = weak_from_this(), label, work = std::move(work),
                                            refuse = std::move(refuse)]() mutable {
    const auto self = weak.lock();
    if (!self) return;
    const Logic logic = self->analyticsLogic_.get();
    if (validateInitialization(label, logic)) {
      work(*logic);
    } else {
      refuse();
    }
  });
}

template <class Work>
void AnalyticsProxy::perform(const char* label, Work work) {
  perform(label, std::move(work), [] {});
}

template <class Handler, class Fallback>
void AnalyticsProxy::answer(const char* label, Handler completionHandler,
                            void (AnalyticsProtocol::*getter)(Handler), Fallback fallback) {
  perform(
      label,
      [completionHandler, getter](AnalyticsProtocol& logic) { (logic.*getter)(completionHandler); },
      [completionHandler, fallback] { callHost(completionHandler, fallback); });
}

bool AnalyticsProxy::validateInitialization(const char* label, const Logic& logic) {
  if (logic) return true;
  Logger::writeLog(PLRLogLevel::error, [&] {
    return std::string("In the ") + label +
           " method an error has occurred: The SDK is not initialized yet!";
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
  perform("setUserId(_:)", [userId = std::move(userId)](AnalyticsProtocol& logic) {
    constexpr const char* label = "SetUserId";
    if (auto valid = ValidatorRules::validateUserId(label, userId)) {
      logic.setUserId(std::move(*valid));
    } else {
      ValidatorRules::notifyThatMethodExecutionWasCanceled(label);
    }
  });
}

void AnalyticsProxy::getCurrentLevel(IntegerHandler completionHandler) {
  answer("getCurrentLevel(_:)", std::move(completionHandler), &AnalyticsProtocol::getCurrentLevel,
         std::int64_t{1});
}

void AnalyticsProxy::setCurrentLevel(std::int64_t currentLevel) {
  perform("setCurrentLevel(_:)", [currentLevel](AnalyticsProtocol& logic) {
    if (ValidatorRules::validateLevel("SetCurrentLevel", currentLevel)) {
      logic.setCurrentLevel(currentLevel);
    }
  });
}

void AnalyticsProxy::customEvent(std::string eventName, AnyCodable::Object parameters) {
  perform("customEvent(_:_:)", [eventName = std::move(eventName),
                                parameters = std::move(parameters)](AnalyticsProtocol& logic) {
    auto valid = ValidatorRules::validateCustomEvent(eventName, parameters);
    // The exclusions name events as the host does, before anything was cut.
    if (!valid || Validator::isExcluded("ce", AnyCodable(eventName))) return;
    logic.customEvent(std::move(valid->name), std::move(valid->params));
  });
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
