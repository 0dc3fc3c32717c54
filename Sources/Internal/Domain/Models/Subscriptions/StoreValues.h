#pragma once

#include <pelorino/SKPaymentTransaction.h>
#include <pelorino/SKProduct.h>

#include "Subscriptions.h"

// What a host hands over of its store. Any thread.

namespace pelorino {

/// A copy whose texts are UTF-8, for use on another thread.
[[nodiscard]] SKProduct repaired(SKProduct product);
[[nodiscard]] SKPaymentTransaction repaired(SKPaymentTransaction transaction);

/// The product as it is stored and reported. A price that is no number is 0; what the price's
/// locale does not tell is empty. `withDiscounts`: whether the introductory price and the discounts
/// count, which older systems do not know.
[[nodiscard]] SubscriptionProduct subscriptionProductOf(const SKProduct& product,
                                                        bool withDiscounts);

}  // namespace pelorino
