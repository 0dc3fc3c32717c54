#include "Subscriptions.h"

#include <algorithm>

namespace pelorino {
namespace {

using Discounts = std::optional<std::map<std::string, Decimal>>;

/// Lists of different length agree: see operator== in the header.
bool discountsAgree(const Discounts& left, const Discounts& right) {
  if (!left || !right || left->size() != right->size()) return true;
  return std::equal(left->begin(), left->end(), right->begin(),
                    [](const auto& one, const auto& other) {
                      return one.first == other.first && one.second.isNear(other.second);
                    });
}

}  // namespace

bool operator==(const SubscriptionProduct& left, const SubscriptionProduct& right) {
  const auto introductory = [](const SubscriptionProduct& product) {
    return product.introductoryPrice.value_or(Decimal());
  };
  return left.productId == right.productId && left.price.isNear(right.price) &&
         left.currencyCode == right.currencyCode &&
         introductory(left).isNear(introductory(right)) &&
         discountsAgree(left.discounts, right.discounts);
}

}  // namespace pelorino
