#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "JsonCoding.h"
#include "Resources.h"
#include "Subscriptions.h"

namespace pelorino {

/// A purchase paid with real money.
struct RealCurrencyPayment {
  static constexpr std::string_view code = "rp";
  std::int64_t timestamp = 0;
  std::int64_t sessionId = 0;
  std::int64_t level = 0;
  std::string productId;
  std::string orderId;
  double price = 0.0;
  std::string currencyCode;
  std::optional<std::vector<std::string>> inProgress;
  std::optional<std::string> inExperiments;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("timestamp", self.timestamp);
    visit("sessionId", self.sessionId);
    visit("level", self.level);
    visit("productId", self.productId);
    visit("orderId", self.orderId);
    visit("price", self.price);
    visit("currencyCode", self.currencyCode);
    visit("inProgress", self.inProgress);
    visit("inExperiments", self.inExperiments);
  }
};

/// A purchase paid with the application's own currencies.
struct VirtualCurrencyPayment {
  static constexpr std::string_view code = "vp";
  std::int64_t timestamp = 0;
  std::int64_t sessionId = 0;
  std::int64_t level = 0;
  std::string purchaseId;
  std::int64_t purchaseAmount = 0;
  Resources purchasePrice;
  std::string purchaseType;
  std::optional<std::vector<std::string>> inProgress;
  std::optional<std::string> inExperiments;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("timestamp", self.timestamp);
    visit("sessionId", self.sessionId);
    visit("level", self.level);
    visit("purchaseId", self.purchaseId);
    visit("purchaseAmount", self.purchaseAmount);
    visit(Field("purchasePrice").entriesLabelled("currency", "price"), self.purchasePrice);
    visit("purchaseType", self.purchaseType);
    visit("inProgress", self.inProgress);
    visit("inExperiments", self.inExperiments);
  }
};

/// An advertisement has been shown.
struct AdImpression {
  static constexpr std::string_view code = "adrv";
  std::int64_t timestamp = 0;
  std::int64_t sessionId = 0;
  std::string source = "sdk";
  std::string network;
  std::optional<std::string> placement;
  std::optional<std::string> unit;
  double revenue = 0.0;
  std::optional<std::vector<std::string>> inProgress;
  std::optional<std::string> inExperiments;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("timestamp", self.timestamp);
    visit("sessionId", self.sessionId);
    visit("source", self.source);
    visit(Field("ad_network").labelled("network"), self.network);
    visit("placement", self.placement);
    visit(Field("ad_unit").labelled("unit"), self.unit);
    visit("revenue", self.revenue);
    visit("inProgress", self.inProgress);
    visit("inExperiments", self.inExperiments);
  }
};

/// A subscription has been paid.
struct SubscriptionPayment {
  static constexpr std::string_view code = "sbs";
  std::int64_t timestamp = 0;
  std::int64_t sessionId = 0;
  std::int64_t level = 0;
  std::string orderId;
  std::string productId;
  std::string regionCode;
  std::string currencyCode;
  std::optional<std::vector<std::string>> inProgress;
  std::optional<std::string> inExperiments;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("timestamp", self.timestamp);
    visit("sessionId", self.sessionId);
    visit("level", self.level);
    visit("orderId", self.orderId);
    visit("productId", self.productId);
    visit("regionCode", self.regionCode);
    visit("currencyCode", self.currencyCode);
    visit("inProgress", self.inProgress);
    visit("inExperiments", self.inExperiments);
  }
};

/// The products that the backend asks about, with the store's data.
struct SubscriptionProductsEvent {
  static constexpr std::string_view code = "sbsp";
  std::int64_t timestamp = 0;
  std::vector<SubscriptionProduct> products;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("timestamp", self.timestamp);
    visit("products", self.products);
  }
};

/// The user's past purchases.
struct RestoredTransactionsEvent {
  static constexpr std::string_view code = "sbsr";
  std::int64_t timestamp = 0;
  std::string currencyCode;
  std::vector<RestoredTransaction> transactions;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("timestamp", self.timestamp);
    visit("currencyCode", self.currencyCode);
    visit("transactions", self.transactions);
  }
};

}  // namespace pelorino
