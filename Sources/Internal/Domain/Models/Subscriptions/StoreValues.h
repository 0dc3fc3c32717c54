#pragma once

#include <pelorino/SKPaymentTransaction.h>
#include <pelorino/SKProduct.h>

#include "Subscriptions.h"

// Copies and conversions of values that the host's store gives. Any thread.

namespace pelorino {

/// A copy for use on another thread. Bytes that are not UTF-8 are replaced.
[[nodiscard]] SKProduct repaired(SKProduct product);
[[nodiscard]] SKPaymentTransaction repaired(SKPaymentTransaction transaction);

/// Converts a product to the form that is stored and reported. A price that is not a number becomes
/// 0. A region or currency that the locale does not name is empty. `withDiscounts`: whether to
/// take the introductory price and the discounts, which old systems do not have.
[[nodiscard]] SubscriptionProduct subscriptionProductOf(const SKProduct& product,
                                                        bool withDiscounts);

}  // namespace pelorino
