#pragma once

#include <pelorino/PLRAccrualType.h>
#include <pelorino/SKPaymentTransaction.h>
#include <pelorino/SKProduct.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "AnyCodable.h"
#include "Resources.h"

// What the public operations take, as plain values: copied on the caller's thread, repaired by the
// rules, and handed to the logic.

namespace pelorino {

struct ReplaceUserIdCall {
  std::string prevUserName;
  std::string userName;
};

struct LevelUpCall {
  std::int64_t level = 0;
  Resources balances;
};

struct CustomEventCall {
  /// By key, in order. A list, since it is one piece of memory for the caller's thread to allocate
  /// and for the queue to give back.
  using Params = std::vector<std::pair<std::string, AnyCodable>>;

  std::string name;
  Params params;
};

struct CurrencyAccrualCall {
  std::string currencyName;
  std::int64_t currencyAmount = 0;
  std::string source;
  PLRAccrualType accrualType = PLRAccrualType::earned;
};

struct VirtualCurrencyPaymentCall {
  std::string purchaseId;
  std::string purchaseType;
  std::int64_t purchaseAmount = 0;
  Resources resources;
};

struct RealCurrencyPaymentCall {
  std::string orderId;
  double price = 0.0;
  std::string productId;
  std::string currencyCode;
};

struct PLRStartProgressionEventParametersLocal {
  std::optional<std::int64_t> difficulty;
  std::optional<std::string> source;
};

struct StartProgressionEventCall {
  std::string eventName;
  PLRStartProgressionEventParametersLocal parameters;
};

struct PLRFinishProgressionEventParametersLocal {
  bool successfulCompletion = false;
  std::int64_t duration = 0;  ///< Seconds; 0 leaves it to the clock.
  Resources spent;
  Resources earned;
};

struct FinishProgressionEventCall {
  std::string eventName;
  PLRFinishProgressionEventParametersLocal parameters;
};

struct SocialNetworkPostCall {
  std::string name;
  std::string reason;
};

/// Values by the name of the referral property.
using ReferrerCall = std::map<std::string, std::string>;

struct SubscriptionPaymentCall {
  SKPaymentTransaction transaction;
  SKProduct product;
};

/// The same as engines tell it.
struct EngineSubscriptionPaymentCall {
  std::string productId;
  std::string transactionId;
};

using SubscriptionHistoryCall = std::vector<SKPaymentTransaction>;
/// The same as engines tell it: identifiers of purchases by product.
using EngineSubscriptionHistoryCall = std::map<std::string, std::vector<std::string>>;

struct AdImpressionCall {
  std::string network;
  double revenue = 0.0;
  std::optional<std::string> placement;
  std::optional<std::string> unit;
};

}  // namespace pelorino
