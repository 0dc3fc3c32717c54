#pragma once

#include <memory>
#include <optional>
#include <string>

/// What the user asked the store for.
struct SKPayment {
  std::string productIdentifier;
};

/// A purchase, or a renewal of an earlier one.
struct SKPaymentTransaction {
  std::optional<std::string> transactionIdentifier;
  SKPayment payment;
  /// The purchase that this one renews or restores. The library ignores the original's own
  /// original.
  std::shared_ptr<const SKPaymentTransaction> originalTransaction;
};
