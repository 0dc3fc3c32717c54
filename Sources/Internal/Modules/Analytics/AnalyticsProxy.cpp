#include "AnalyticsProxy.h"

namespace pelorino {

void AnalyticsProxy::initialize(AnalyticsLogic* analyticsLogic) {
  setLogic(analyticsLogic);
  customEventParamsCount_ = Config::defaulConfiguration().eventParamsCount;
  if (analyticsLogic == nullptr) return;
  const auto keep = [this](std::int64_t count) { customEventParamsCount_ = count; };
  keep(analyticsLogic->customEventParamsCount());
  analyticsLogic->onCustomEventParamsCountUpdate = keep;
}

void AnalyticsProxy::isInited(HostClosure<void(bool)> completionHandler) {
  enqueue([handler = std::move(completionHandler)](const AnalyticsLogic* logic) {
    callHost(handler, logic != nullptr);
  });
}

}  // namespace pelorino
