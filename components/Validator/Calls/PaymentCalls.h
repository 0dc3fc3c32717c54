#pragma once

#include <pelorino/PLRAccrualType.h>
#include <pelorino/SKPaymentTransaction.h>
#include <pelorino/SKProduct.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Call.h"
#include "Resources.h"

// What the player has got and paid, subscriptions included.

namespace pelorino {

struct CurrencyAccrualCall;
struct VirtualCurrencyPaymentCall;
struct RealCurrencyPaymentCall;
struct EngineSubscriptionPaymentCall;

namespace ValidatorRules {
[[nodiscard]] std::optional<CurrencyAccrualCall> validateCurrencyAccrual(CurrencyAccrualCall call);
[[nodiscard]] std::optional<VirtualCurrencyPaymentCall> validateVirtualCurrencyPayment(
    VirtualCurrencyPaymentCall call);
[[nodiscard]] std::optional<RealCurrencyPaymentCall> validateRealCurrencyPayment(
    RealCurrencyPaymentCall call);
[[nodiscard]] std::optional<EngineSubscriptionPaymentCall> validateSubscriptionPayment(
    EngineSubscriptionPaymentCall call);
}  // namespace ValidatorRules

struct CurrencyAccrualCall {
  std::string currencyName;
  std::int64_t currencyAmount = 0;
  std::string source;
  PLRAccrualType accrualType = PLRAccrualType::earned;

  static constexpr const char* label = "currencyAccrual(_:_:_:_:)";
  static constexpr auto rule = ValidatorRules::validateCurrencyAccrual;
  static constexpr auto exclusion = Exclusion::withGiven("ca", &CurrencyAccrualCall::source);
};

struct VirtualCurrencyPaymentCall {
  std::string purchaseId;
  std::string purchaseType;
  std::int64_t purchaseAmount = 0;
  Resources resources;

  static constexpr const char* label = "virtualCurrencyPayment(_:_:_:_:)";
  static constexpr auto rule = ValidatorRules::validateVirtualCurrencyPayment;
  static constexpr auto exclusion =
      Exclusion::withGiven("vp", &VirtualCurrencyPaymentCall::purchaseId);
};

struct RealCurrencyPaymentCall {
  std::string orderId;
  double price = 0.0;
  std::string productId;
  std::string currencyCode;

  static constexpr const char* label = "realCurrencyPayment(_:_:_:_:)";
  static constexpr auto rule = ValidatorRules::validateRealCurrencyPayment;
  static constexpr auto exclusion = Exclusion::ofEvent("rp");
};

struct SubscriptionPaymentCall {
  SKPaymentTransaction transaction;
  SKProduct product;

  static constexpr const char* label = "subscriptionPayment(_:_:)";
  static constexpr auto rule = noRule;
  static constexpr auto exclusion = Exclusion::ofEvent("sbs");
};

/// The same as engines tell it.
struct EngineSubscriptionPaymentCall {
  std::string productId;
  std::string transactionId;

  static constexpr const char* label = "subscriptionPayment(_:_:)";
  /// Checks its exclusion, "sbs", itself: unlike elsewhere, an excluded call is dropped before the
  /// log tells what is wrong with it.
  [[nodiscard]] static std::optional<EngineSubscriptionPaymentCall> rule(
      EngineSubscriptionPaymentCall call);
  static constexpr auto exclusion = Exclusion::never;
};

struct SubscriptionHistoryCall {
  std::vector<SKPaymentTransaction> transactions;

  static constexpr const char* label = "subscriptionHistory(_:)";
  static constexpr auto rule = noRule;
  static constexpr auto exclusion = Exclusion::ofEvent("sbsr");
};

/// The same as engines tell it.
struct EngineSubscriptionHistoryCall {
  /// Identifiers of purchases by product.
  std::map<std::string, std::vector<std::string>> transactions;

  static constexpr const char* label = "subscriptionHistory(_:)";
  static constexpr auto rule = noRule;
  static constexpr auto exclusion = Exclusion::ofEvent("sbsr");
};

struct RestoreTransactionHistoryQuery {
  using Answer = bool;
  static constexpr const char* label = "isRestoreTransactionHistoryRequired(_:)";
  static constexpr bool fallback = false;
};

}  // namespace pelorino
