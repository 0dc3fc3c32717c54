#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "Calls.h"
#include "PLRAnalyticsConfigurationLocal.h"

namespace pelorino {

struct Interval;

/// What each public operation demands of its arguments. A rule takes the raw arguments and gives
/// the repaired ones, or nothing when the call is rejected; the messages are written here. All
/// checks of a rule run before its verdict.
///
/// Entries of a dictionary whose keys become equal overwrite each other: the later one in the order
/// of the original keys stays.
///
/// Threads: the incomeQueue.
class ValidatorRules final {
 public:
  ValidatorRules() = delete;

  [[nodiscard]] static std::optional<std::string> validateInitializeKey(std::string key);

  /// A bad field is removed; the configuration itself is never rejected.
  [[nodiscard]] static std::optional<PLRAnalyticsConfigurationLocal> validateInitialize(
      std::optional<PLRAnalyticsConfigurationLocal> configuration);

  /// An empty id passes: it means the default user. Writes no cancel message; the caller does.
  [[nodiscard]] static std::optional<std::string> validateUserId(std::string_view method,
                                                                 std::string userId);
  [[nodiscard]] static std::optional<ReplaceUserIdCall> validateReplaceUserId(
      ReplaceUserIdCall call);
  [[nodiscard]] static std::optional<std::int64_t> validateCurrentLevel(std::int64_t level);

  [[nodiscard]] static std::optional<LevelUpCall> validateLevelUp(LevelUpCall call);
  [[nodiscard]] static std::optional<Resources> validateCurrentBalance(Resources balance);
  [[nodiscard]] static std::optional<std::int64_t> validateTutorial(std::int64_t step);
  [[nodiscard]] static std::optional<StartProgressionEventCall> validateStartProgressionEvent(
      StartProgressionEventCall call);
  [[nodiscard]] static std::optional<FinishProgressionEventCall> validateFinishProgressionEvent(
      FinishProgressionEventCall call);

  /// Bad parameters are left out; only a bad name rejects.
  [[nodiscard]] static std::optional<CustomEventCall> validateCustomEvent(CustomEventCall call);

  [[nodiscard]] static std::optional<CurrencyAccrualCall> validateCurrencyAccrual(
      CurrencyAccrualCall call);
  [[nodiscard]] static std::optional<VirtualCurrencyPaymentCall> validateVirtualCurrencyPayment(
      VirtualCurrencyPaymentCall call);
  [[nodiscard]] static std::optional<RealCurrencyPaymentCall> validateRealCurrencyPayment(
      RealCurrencyPaymentCall call);

  [[nodiscard]] static std::optional<EngineSubscriptionPaymentCall> validateSubscriptionPayment(
      EngineSubscriptionPaymentCall call);

  [[nodiscard]] static std::optional<std::string> validateSocialNetworkConnect(std::string name);
  [[nodiscard]] static std::optional<SocialNetworkPostCall> validateSocialNetworkPost(
      SocialNetworkPostCall call);
  [[nodiscard]] static std::optional<ReferrerCall> validateReferrer(const ReferrerCall& utmData);
  [[nodiscard]] static std::optional<AdImpressionCall> validateAdImpression(AdImpressionCall call);

  static void notifyThatMethodExecutionWasCanceled(std::string_view method);

 private:
  /// The entries whose key has content and whose amount is allowed, under their cut keys.
  [[nodiscard]] static Resources validateResorces(std::string_view method,
                                                  std::string_view resourcesName,
                                                  const Resources& resources,
                                                  std::size_t maximalKeyLength, Interval allowed);
};

}  // namespace pelorino
