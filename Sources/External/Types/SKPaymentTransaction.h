#pragma once

#include <memory>
#include <optional>
#include <string>

/// What was asked of the store.
struct SKPayment {
  std::string productIdentifier;
};

/// A purchase, or a renewal of an earlier one.
struct SKPaymentTransaction {
  std::optional<std::string> transactionIdentifier;
  SKPayment payment;
  /// The purchase that this one renews or restores. Its own original does not count.
  std::shared_ptr<const SKPaymentTransaction> originalTransaction;
};
