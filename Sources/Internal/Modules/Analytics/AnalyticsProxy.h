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

/// The front of analytics. A block of it refuses the call if the library isn't started, validates
/// its arguments, asks the exclusions, and only then calls the logic.
///
/// Threads: any. The logic is given on the incomeQueue.
class AnalyticsProxy final : public ModuleFront<AnalyticsLogic> {
 public:
  /// Gives the logic; null takes it away, and calls are refused again.
  void initialize(AnalyticsLogic* analyticsLogic);

  void isInited(HostClosure<void(bool)> completionHandler);

  /// Has the logic perform what the call's rule makes of it, unless the rule rejects it or the
  /// backend has switched it off.
  template <class Call>
  void perform(Call call);

  /// Has the host's handler, if there is one, called with the answer.
  template <class Query, class Handler>
  void answer(Handler completionHandler);

  /// Limit of parameters of a custom event.
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

/// The block keeps the handler: the queue knows that its end is code of the host, too.
template <class Query, class Handler>
void AnalyticsProxy::answer(Handler completionHandler) {
  post(Query::label,
       [handler = HostHeld<Handler>(std::move(completionHandler))](AnalyticsLogic* logic) {
         using Answer = typename Query::Answer;
         callHost(handler, logic != nullptr ? logic->answer(Query()) : Answer(Query::fallback));
       });
}

}  // namespace pelorino
