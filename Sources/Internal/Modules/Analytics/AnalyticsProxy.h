#pragma once

#include <atomic>
#include <cstdint>
#include <optional>
#include <utility>

#include "AnalyticsLogic.h"
#include "Config.h"
#include "HostClosure.h"
#include "ModuleFront.h"

namespace pelorino {

/// The front of analytics. Each call becomes a block on the incomeQueue. The block refuses the call
/// if the library is not started, checks its arguments and the exclusions, and then calls the
/// logic.
///
/// Threads: any, except initialize(): the incomeQueue only.
/// Errors:  refused calls are logged.
class AnalyticsProxy final : public ModuleFront<AnalyticsLogic> {
 public:
  /// Sets the logic, which is borrowed. With null, calls are refused.
  void initialize(AnalyticsLogic* analyticsLogic);

  /// Answers whether there is a logic, on the incomeQueue.
  void isInited(HostClosure<void(bool)> completionHandler);

  /// The call's rule repairs the call or rejects it. The logic then performs the repaired call,
  /// unless the backend has excluded it.
  template <class Call>
  void perform(Call call);

  /// Calls the host's handler, if there is one, with the answer, on the incomeQueue.
  template <class Query, class Handler>
  void answer(Handler completionHandler);

  /// The largest number of parameters of a custom event.
  [[nodiscard]] std::int64_t getCustomEventParamsCount() const { return customEventParamsCount_; }

 private:
  /// Written on the incomeQueue.
  std::atomic<std::int64_t> customEventParamsCount_ =
      Config::defaulConfiguration().eventParamsCount;
};

template <class Call>
void AnalyticsProxy::perform(Call call) {
  post(Call::label, [call = std::move(call)](AnalyticsLogic* logic) mutable {
    if (logic == nullptr) return;
    const auto isExcluded = Call::exclusion(call);
    std::optional<Call> valid = Call::rule(std::move(call));
    if (!valid || isExcluded(*valid)) return;
    logic->perform(*std::move(valid));
  });
}

/// The block holds the handler as HostHeld: destroying it runs code of the host, too.
template <class Query, class Handler>
void AnalyticsProxy::answer(Handler completionHandler) {
  post(Query::label,
       [handler = HostHeld<Handler>(std::move(completionHandler))](AnalyticsLogic* logic) {
         using Answer = typename Query::Answer;
         callHost(handler, logic != nullptr ? logic->answer(Query()) : Answer(Query::fallback));
       });
}

}  // namespace pelorino
