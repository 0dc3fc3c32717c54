#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Decimal.h"
#include "JsonCoding.h"
#include "RowId.h"

namespace pelorino {

/// A product of the store that the backend asks about.
struct SubscriptionProduct {
  std::string productId;
  Decimal price;
  std::string regionCode;
  std::string currencyCode;
  std::optional<Decimal> introductoryPrice;
  std::optional<std::map<std::string, Decimal>> discounts;

  /// Whether there is nothing new to report: prices may differ by less than 0.0001, an absent
  /// introductory price is 0, and the region does not count. Discounts count only where both sides
  /// have the same number of them.
  friend bool operator==(const SubscriptionProduct& left, const SubscriptionProduct& right);

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("productId", self.productId);
    visit("price", self.price);
    visit("regionCode", self.regionCode);
    visit("currencyCode", self.currencyCode);
    visit("introductoryPrice", self.introductoryPrice);
    visit("discounts", self.discounts);
  }
};

/// Past purchases of one product, as the host has restored them.
struct RestoredTransaction {
  std::string productID;
  std::vector<std::string> transactionIds;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("productID", self.productID);
    visit("transactionIds", self.transactionIds);
  }
};

/// What is known of a project's subscriptions and what of it is still to be reported, one row for
/// each project. Shared by reference.
class SubscriptionInfo final {
 public:
  RowId idKey = notStoredRowId;
  RowId projectId = notStoredRowId;
  std::vector<SubscriptionProduct> products;
  std::vector<RestoredTransaction> restoredTransaction;
  bool alreadyRestored = false;          ///< The host has given its history.
  bool alreadySendRestoreEvent = false;  ///< That history has been reported.
  bool productIsChanged = false;         ///< The products are to be reported.
};

}  // namespace pelorino
