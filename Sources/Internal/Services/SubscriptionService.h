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

/// Asks the host's store for the products that the backend names. Stores them for the active
/// project, and marks what of them and of the user's past purchases must still be reported.
///
/// Threads: the incomeQueue only. The store may answer on any thread.
/// Errors:  failed requests are logged and repeated.
class SubscriptionService final {
 public:
  using StoreSource = std::function<Host::HeldStore()>;
  using ProductsCallback = std::function<void(const std::vector<SubscriptionProduct>& products)>;
  using TransactionTable = std::map<std::string, std::vector<std::string>>;

  struct RestoredHistory {
    std::vector<RestoredTransaction> transactions;
    std::optional<std::string> currencyCode;  ///< Of the first known product.
  };

  /// `store` is called at each request; it may return null.
  SubscriptionService(Run& run, StateManager& stateManager,
                      SubscriptionRepository& subscriptionRepository, StoreSource store,
                      HostFacts& facts, Executor& executor);
  ~SubscriptionService();
  SubscriptionService(const SubscriptionService&) = delete;
  SubscriptionService& operator=(const SubscriptionService&) = delete;

  /// Asks for the products until an answer comes. The first repeat waits 60 seconds; each failure
  /// adds 60 seconds, up to four minutes. An answer does not shorten the wait again. A later call
  /// replaces an earlier one. The callback gets only products that were asked for. An empty list
  /// does nothing.
  void requestUserProducts(std::vector<std::string> productsIDs,
                           ProductsCallback requestProductsCallback);

  /// Cancels the request that the store has not answered.
  void cancelRequest();

  // Whether the products must be reported.
  [[nodiscard]] bool isProductsChanged() { return info()->productIsChanged; }
  void resetSendProductsMark();

  // Whether the host must give the history of purchases, and whether it must be reported.
  [[nodiscard]] bool isNeedRestoreHistory() { return !info()->alreadyRestored; }
  [[nodiscard]] bool isNeedSendRestoredHistory() { return !info()->alreadySendRestoreEvent; }
  void markAsRestoredHistory();
  void markAsSendRestoredHistory();
  /// The host must give the history again.
  void resetHistoryMark();

  /// Replaces the history. Transactions without an original are ignored.
  void processTransactions(const std::vector<SKPaymentTransaction>& transactions);
  /// The same, as identifiers of purchases by product.
  void processTransactions(const TransactionTable& transactions);
  /// Absent when the history is empty.
  [[nodiscard]] std::optional<RestoredHistory> getDataForSBSREvent();
  void clearSubscriptionHistory();

  /// Converts a product of the store to the form that is reported.
  [[nodiscard]] SubscriptionProduct productOf(const SKProduct& product) const;
  /// Returns whether the product was known, and adds it if not. The addition is in memory only
  /// until storeProducts() or the next change of a mark: the caller stores the event first, so that
  /// a crash does not lose it.
  [[nodiscard]] bool checkIfContains(const SubscriptionProduct& product);
  void storeProducts();
  [[nodiscard]] std::optional<SubscriptionProduct> findLocalProduct(const std::string& productId);

 private:
  /// The row of the active project. It is inserted if there is none.
  [[nodiscard]] std::shared_ptr<SubscriptionInfo> info();
  template <class Change>
  void change(Change change);

  void startRequest();
  /// Returns why the store could not be asked; absent if it was.
  [[nodiscard]] std::optional<std::string> askStore(const PLRStore::ProductsHandler& handler);
  /// The result may be called on any thread.
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
  /// Empty when no answer is expected.
  HostHeld<std::shared_ptr<SKProductsRequest>> productRequest_;
  std::int64_t lastRequest_ = 0;  ///< Number of the request whose answer counts.
  std::int64_t requestAttempt_ = 1;
  std::unique_ptr<Timer> requestRetry_;
};

}  // namespace pelorino
