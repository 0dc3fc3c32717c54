#pragma once

#include <pelorino/PLRStore.h>
#include <pelorino/SKPaymentTransaction.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Executor.h"
#include "Host.h"
#include "HostCode.h"
#include "HostFacts.h"
#include "Repositories.h"
#include "Run.h"
#include "StateManager.h"

namespace pelorino {

/// Asks the host's store for the products that the backend names, keeps them for the active
/// project, and keeps the marks that tell what of them, and of the host's past purchases, is still
/// to be reported.
///
/// Threads: the incomeQueue only. The store may answer on any thread.
class SubscriptionService final {
 public:
  using StoreSource = std::function<Host::HeldStore()>;
  using ProductsCallback = std::function<void(const std::vector<SubscriptionProduct>& products)>;
  using TransactionTable = std::map<std::string, std::vector<std::string>>;

  struct RestoredHistory {
    std::vector<RestoredTransaction> transactions;
    std::optional<std::string> currencyCode;  ///< That of the first known product.
  };

  /// `store` is asked at each request; it may give none.
  SubscriptionService(Run& run, StateManager& stateManager,
                      SubscriptionRepository& subscriptionRepository, StoreSource store,
                      HostFacts& facts, Executor& executor);
  ~SubscriptionService();
  SubscriptionService(const SubscriptionService&) = delete;
  SubscriptionService& operator=(const SubscriptionService&) = delete;

  /// Asks until an answer comes: again after 60 seconds, then after 60 more each time, up to four
  /// minutes. The waits never get shorter in the life of this object, and end with it. A later call
  /// takes the place of an earlier one. The callback gets the products that were asked for.
  void requestUserProducts(std::vector<std::string> productsIDs,
                           ProductsCallback requestProductsCallback);

  /// Lets go of the request that the store has not answered.
  void cancelRequest();

  // The products are to be reported.
  [[nodiscard]] bool isProductsChanged() { return info()->productIsChanged; }
  void resetSendProductsMark();

  // The host is to give its history, and what it gave is to be reported.
  [[nodiscard]] bool isNeedRestoreHistory() { return !info()->alreadyRestored; }
  [[nodiscard]] bool isNeedSendRestoredHistory() { return !info()->alreadySendRestoreEvent; }
  void markAsRestoredHistory();
  void markAsSendRestoredHistory();
  /// Asks the host anew.
  void resetHistoryMark();

  /// The history is these purchases instead of what it was. Those without an original do not count.
  void processTransactions(const std::vector<SKPaymentTransaction>& transactions);
  /// Identifiers of purchases by product.
  void processTransactions(const TransactionTable& transactions);
  /// Absent when the history is empty.
  [[nodiscard]] std::optional<RestoredHistory> getDataForSBSREvent();
  void clearSubscriptionHistory();

  /// The product of the store as it is reported.
  [[nodiscard]] SubscriptionProduct productOf(const SKProduct& product) const;
  /// Whether the product is known; from here on it is. Stored by the next change of the marks or by
  /// storeProducts(): a product that has been reported should not be lost before its report.
  [[nodiscard]] bool checkIfContains(const SubscriptionProduct& product);
  void storeProducts();
  [[nodiscard]] std::optional<SubscriptionProduct> findLocalProduct(const std::string& productId);

 private:
  /// The row of the active project, made on demand.
  [[nodiscard]] std::shared_ptr<SubscriptionInfo> info();
  template <class Change>
  void change(Change change);

  void startRequest();
  /// Empty, or why the host's store has not been asked.
  [[nodiscard]] std::optional<std::string> askStore(const PLRStore::ProductsHandler& handler);
  /// Any thread.
  [[nodiscard]] PLRStore::ProductsHandler handlerOf(std::int64_t request);
  void receive(std::int64_t request, const SKProductsResponse& response);
  void receiveProducts(const std::vector<SKProduct>& storeProducts);
  void logMissing(const std::vector<SubscriptionProduct>& products) const;
  void retryAfter(const std::string& error);

  Run& run_;
  StateManager& stateManager_;
  SubscriptionRepository& subscriptionRepository_;
  StoreSource store_;
  HostFacts& facts_;
  Executor& executor_;

  std::vector<std::string> productList_;  ///< What the last request asks for.
  ProductsCallback requestProductsCallback_;
  /// None while no answer is awaited.
  HostHeld<std::shared_ptr<SKProductsRequest>> productRequest_;
  std::int64_t lastRequest_ = 0;  ///< Number of the request whose answer counts.
  std::int64_t requestAttempt_ = 1;
  std::unique_ptr<Timer> requestRetry_;
};

}  // namespace pelorino
