#pragma once

#include <cstdint>
#include <string>

#include "Calls.h"
#include "HostClosure.h"

namespace pelorino {

/// What the analytics module offers, behind its front as behind the logic itself.
class AnalyticsProtocol {
 public:
  using TextHandler = HostClosure<void(const std::string&)>;
  using BoolHandler = HostClosure<void(bool)>;
  using IntegerHandler = HostClosure<void(std::int64_t)>;

  virtual ~AnalyticsProtocol() = default;

  virtual void stopSDK() = 0;
  virtual void getDeviceId(TextHandler completionHandler) = 0;
  virtual void getSDKVersion(TextHandler completionHandler) = 0;
  virtual void getTrackingAvailability(BoolHandler completionHandler) = 0;
  virtual void setTrackingAvailability(bool value) = 0;
  virtual void getUserId(TextHandler completionHandler) = 0;
  virtual void setUserId(std::string userId) = 0;
  virtual void replaceUserId(ReplaceUserIdCall call) = 0;
  virtual void getCurrentLevel(IntegerHandler completionHandler) = 0;
  virtual void setCurrentLevel(std::int64_t currentLevel) = 0;
  virtual void levelUp(LevelUpCall call) = 0;
  virtual void currentBalance(Resources balance) = 0;
  virtual void customEvent(CustomEventCall call) = 0;
  virtual void sendBufferedEvents() = 0;
  virtual void virtualCurrencyPayment(VirtualCurrencyPaymentCall call) = 0;
  virtual void currencyAccrual(CurrencyAccrualCall call) = 0;
  virtual void startProgressionEvent(StartProgressionEventCall call) = 0;
  virtual void finishProgressionEvent(FinishProgressionEventCall call) = 0;
  virtual void realCurrencyPayment(RealCurrencyPaymentCall call) = 0;
  virtual void socialNetworkConnect(std::string name) = 0;
  virtual void socialNetworkPost(SocialNetworkPostCall call) = 0;
  virtual void tutorial(std::int64_t step) = 0;
  virtual void referrer(ReferrerCall utmData) = 0;
  virtual void isRestoreTransactionHistoryRequired(BoolHandler completionHandler) = 0;
  virtual void subscriptionPayment(SubscriptionPaymentCall call) = 0;
  virtual void subscriptionPayment(EngineSubscriptionPaymentCall call) = 0;
  virtual void subscriptionHistory(SubscriptionHistoryCall transactions) = 0;
  virtual void subscriptionHistory(EngineSubscriptionHistoryCall transactions) = 0;
  virtual void adImpression(AdImpressionCall call) = 0;

  /// Limit of parameters of a custom event. Any thread.
  [[nodiscard]] virtual std::int64_t getCustomEventParamsCount() = 0;
};

}  // namespace pelorino
