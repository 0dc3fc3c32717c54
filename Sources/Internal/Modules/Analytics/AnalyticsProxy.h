#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

#include "AnalyticsLogic.h"
#include "Guarded.h"
#include "HostCall.h"
#include "QueueManager.h"

namespace pelorino {

/// The front of analytics. Here a public call leaves the caller's thread: it becomes a block on the
/// incomeQueue, which refuses it if the library isn't started, validates its arguments, asks the
/// exclusions, and only then calls the logic.
///
/// Threads: any. The logic is given on the incomeQueue.
class AnalyticsProxy final : public std::enable_shared_from_this<AnalyticsProxy> {
 public:
  /// Gives the logic; none takes it away, and calls are refused again.
  void initialize(std::shared_ptr<AnalyticsLogic> analyticsLogic);
  void isInited(std::function<void(bool)> completionHandler);

  /// Has the logic perform what the call's rule makes of it, unless the rule rejects it or the
  /// backend has switched it off.
  template <class Call>
  void perform(Call call);

  /// Has the host's handler, if there is one, called with the answer.
  template <class Query, class Handler>
  void answer(Handler completionHandler);

  void stopSDK();
  [[nodiscard]] std::int64_t getCustomEventParamsCount() const;

  /// True when the library has been started; otherwise writes the line that refuses the call.
  [[nodiscard]] static bool validateInitialization(std::string_view label, bool isInitialized);

 private:
  /// Runs `work(logic)` on the incomeQueue: with null, behind the line that refuses the call, when
  /// the library has not been started.
  template <class Work>
  void post(const char* label, Work work);

  Guarded<std::shared_ptr<AnalyticsLogic>> analyticsLogic_;
};

template <class Work>
void AnalyticsProxy::post(const char* label, Work work) {
  QueueManager::incomeQueue().addOperation(
      [weak = weak_from_this(), label, work = std::move(work)]() mutable {
        const auto self = weak.lock();
        if (!self) return;
        const auto logic = self->analyticsLogic_.get();
        work(validateInitialization(label, logic != nullptr) ? logic.get() : nullptr);
      });
}

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
  post(Query::label, [handler = std::move(completionHandler)](const AnalyticsLogic* logic) {
    using Answer = typename Query::Answer;
    callHost(handler, logic != nullptr ? logic->answer(Query()) : Answer(Query::fallback));
  });
}

}  // namespace pelorino
