#include "AnalyticsProxy.h"

#include <fmt/format.h>

#include "Config.h"
#include "Logger.h"

namespace pelorino {

void AnalyticsProxy::initialize(std::shared_ptr<AnalyticsLogic> analyticsLogic) {
  analyticsLogic_.set(std::move(analyticsLogic));
}

void AnalyticsProxy::isInited(std::function<void(bool)> completionHandler) {
  QueueManager::incomeQueue().addOperation(
      [weak = weak_from_this(), completionHandler = std::move(completionHandler)] {
        if (const auto self = weak.lock()) {
          callHost(completionHandler, self->analyticsLogic_.get() != nullptr);
        }
      });
}

void AnalyticsProxy::stopSDK() {
  if (const auto logic = analyticsLogic_.get()) logic->stopSDK();
}

std::int64_t AnalyticsProxy::getCustomEventParamsCount() const {
  const auto logic = analyticsLogic_.get();
  return logic ? logic->getCustomEventParamsCount()
               : Config::defaulConfiguration().eventParamsCount;
}

bool AnalyticsProxy::validateInitialization(std::string_view label, bool isInitialized) {
  if (isInitialized) return true;
  Logger::writeLog(PLRLogLevel::error, [&] {
    return fmt::format("In the {} method an error has occurred: The SDK is not initialized yet!",
                       label);
  });
  return false;
}

}  // namespace pelorino
