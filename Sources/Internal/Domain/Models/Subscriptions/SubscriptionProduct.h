#pragma once

#include <map>
#include <optional>
#include <string>

#include "Decimal.h"
#include "JsonCoding.h"

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

}  // namespace pelorino
