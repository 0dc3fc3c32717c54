#pragma once

#include <vector>

#include "RestoredTransaction.h"
#include "RowId.h"
#include "SubscriptionProduct.h"

namespace pelorino {

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
