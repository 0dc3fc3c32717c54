#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "AnalyticsProtocol.h"
#include "Guarded.h"

namespace pelorino {

/// The front of analytics. Here a public call leaves the caller's thread: it becomes a block on the
/// incomeQueue, which refuses it if the library isn't started, validates its arguments, asks the
/// exclusions, and only then calls the logic.
///
/// Threads: any. The logic is given on the incomeQueue.
class AnalyticsProxy final : public AnalyticsProtocol,
                             public std::enable_shared_from_this<AnalyticsProxy> {
 public:
  /// Gives the logic; none takes it away, and calls are refused again.
  void initialize(std::shared_ptr<AnalyticsProtocol> analyticsLogic);
  void isInited(BoolHandler completionHandler);

  void stopSDK() override;
  void getDeviceId(TextHandler completionHandler) override;
  void getSDKVersion(TextHandler completionHandler) override;
  void getTrackingAvailability(BoolHandler completionHandler) override;
  void setTrackingAvailability(bool value) override;
  void getUserId(TextHandler completionHandler) override;
  void setUserId(std::string userId) override;
  void replaceUserId(ReplaceUserIdCall call) override;
  void getCurrentLevel(IntegerHandler completionHandler) override;
  void setCurrentLevel(std::int64_t currentLevel) override;
  void levelUp(LevelUpCall call) override;
  void currentBalance(Resources balance) override;
  void customEvent(CustomEventCall call) override;
  void sendBufferedEvents() override;
  void virtualCurrencyPayment(VirtualCurrencyPaymentCall call) override;
  void currencyAccrual(CurrencyAccrualCall call) override;
  void startProgressionEvent(StartProgressionEventCall call) override;
  void finishProgressionEvent(FinishProgressionEventCall call) override;
  void realCurrencyPayment(RealCurrencyPaymentCall call) override;
  void socialNetworkConnect(std::string name) override;
  void socialNetworkPost(SocialNetworkPostCall call) override;
  void tutorial(std::int64_t step) override;
  void referrer(ReferrerCall utmData) override;
  void isRestoreTransactionHistoryRequired(BoolHandler completionHandler) override;
  void subscriptionPayment(SubscriptionPaymentCall call) override;
  void subscriptionPayment(EngineSubscriptionPaymentCall call) override;
  void subscriptionHistory(SubscriptionHistoryCall transactions) override;
  void subscriptionHistory(EngineSubscriptionHistoryCall transactions) override;
  void adImpression(AdImpressionCall call) override;
  [[nodiscard]] std::int64_t getCustomEventParamsCount() override;

  /// True when the library has been started; otherwise writes the line that refuses the call.
  [[nodiscard]] static bool validateInitialization(std::string_view label, bool isInitialized);

 private:
  using Logic = std::shared_ptr<AnalyticsProtocol>;

  /// Runs `work(logic)` on the incomeQueue: with null, behind the line that refuses the call, when
  /// the library has not been started.
  template <class Work>
  void post(const char* label, Work work);
  /// Runs `work(*logic)` there when it has been.
  template <class Work>
  void perform(const char* label, Work work);
  template <class Handler, class Fallback>
  void answer(const char* label, Handler completionHandler,
              void (AnalyticsProtocol::*getter)(Handler), Fallback fallback);
  /// Runs `operation` with what `rule` makes of the call, unless the rule rejects it or what
  /// `exclusion` returns for the call as it came in is true for the call as the rule repaired it.
  template <class Call, class Rule, class Exclusion>
  void track(const char* label, Call call, Rule rule, Exclusion exclusion,
             void (AnalyticsProtocol::*operation)(Call));

  Guarded<Logic> analyticsLogic_;
};

}  // namespace pelorino
