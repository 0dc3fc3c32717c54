#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Decimal.h"
#include "JsonCoding.h"
#include "RowId.h"

namespace pelorino {

/// A product of the store, as it is stored and reported.
struct SubscriptionProduct {
  std::string productId;
  Decimal price;
  std::string regionCode;
  std::string currencyCode;
  std::optional<Decimal> introductoryPrice;
  std::optional<std::map<std::string, Decimal>> discounts;

  /// True if there is nothing new to report. Prices are equal if they differ by less than 0.0001.
  /// An absent introductory price counts as 0. The region is not compared. Discounts are compared
  /// only if both sides have the same number of them.
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

/// The user's past purchases of one product.
struct RestoredTransaction {
  std::string productID;
  std::vector<std::string> transactionIds;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("productID", self.productID);
    visit("transactionIds", self.transactionIds);
  }
};

/// The subscriptions of a project, and what of them must still be reported; one row for each
/// project.
///
/// Threads: the incomeQueue only. Shared: store a change through the repository.
class SubscriptionInfo final {
 public:
  RowId idKey = notStoredRowId;
  RowId projectId = notStoredRowId;
  std::vector<SubscriptionProduct> products;
  std::vector<RestoredTransaction> restoredTransaction;
  bool alreadyRestored = false;          ///< The host has given its history.
  bool alreadySendRestoreEvent = false;  ///< That history has been reported.
  bool productIsChanged = false;         ///< The products must be reported.
};

}  // namespace pelorino
