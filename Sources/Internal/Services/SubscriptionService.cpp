#include "SubscriptionService.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <chrono>
#include <exception>
#include <string_view>
#include <utility>

#include "Logger.h"
#include "QueueManager.h"
#include "StoreValues.h"
#include "Text.h"

namespace pelorino {
namespace {

constexpr std::int64_t requestTimeout = 60;     ///< Seconds that each failure adds to the wait.
constexpr std::int64_t longestRequestWait = 4;  ///< Times requestTimeout.

}  // namespace

SubscriptionService::SubscriptionService(Run& run, StateManager& stateManager,
                                         SubscriptionRepository& subscriptionRepository,
                                         StoreSource store, HostFacts& facts, Executor& executor)
    : run_(run),
      stateManager_(stateManager),
      subscriptionRepository_(subscriptionRepository),
      store_(std::move(store)),
      facts_(facts),
      executor_(executor) {}

SubscriptionService::~SubscriptionService() {
  cancelRequest();
}

std::shared_ptr<SubscriptionInfo> SubscriptionService::info() {
  const RowId projectId = stateManager_.getActiveProject()->idKey;
  const auto rows = subscriptionRepository_.ofProject(projectId);
  if (!rows.empty()) return rows.front();
  auto made = std::make_shared<SubscriptionInfo>();
  made->projectId = projectId;
  subscriptionRepository_.insert(made);
  return made;
}

template <class Change>
void SubscriptionService::change(Change change) {
  const auto row = info();
  change(*row);
  subscriptionRepository_.update(*row);
}

void SubscriptionService::requestUserProducts(std::vector<std::string> productsIDs,
                                              ProductsCallback requestProductsCallback) {
  if (productsIDs.empty()) {
    Logger::writeLog(PLRLogLevel::debug, "Product list is empty");
    return;
  }
  productList_ = std::move(productsIDs);
  requestProductsCallback_ = std::move(requestProductsCallback);
  startRequest();
}

void SubscriptionService::startRequest() {
  requestRetry_.reset();
  cancelRequest();
  const auto handler = handlerOf(++lastRequest_);  // A late answer to an older request is ignored.
  if (const auto error = askStore(handler)) handler({.products = {}, .error = error});
}

std::optional<std::string> SubscriptionService::askStore(const PLRStore::ProductsHandler& handler) {
  std::optional<std::string> error;
  const auto fail = [&](const char* what) {
    error = what == nullptr ? "The store ended with an unknown error" : what;
  };
  const auto held = store_();
  if (!held) return "The host has set no store";
  const auto makeRequest = [&](const auto& store) {
    productRequest_ =
        store->makeProductsRequest({productList_.begin(), productList_.end()}, handler);
  };
  held->run(makeRequest, fail);
  if (!error && !productRequest_) return "The store has made no request";
  productRequest_.run([](const auto& request) { request->start(); }, fail);
  return error;
}

void SubscriptionService::cancelRequest() {
  // An exception of the host's code does not matter any more.
  productRequest_.run([](const auto& request) { request->cancel(); }, [](const char*) {});
  productRequest_.reset();
}

PLRStore::ProductsHandler SubscriptionService::handlerOf(std::int64_t request) {
  return [answer = run_.callback([this, request](const SKProductsResponse& response) {
    receive(request, response);
  })](SKProductsResponse response) {
    try {  // The store's thread must not get an exception of the library.
      answer(std::move(response));
    } catch (const std::exception& error) {
      Logger::writeLog(PLRLogLevel::error, [&] {
        return fmt::format("An answer of the store was dropped: {}", error.what());
      });
    }
  };
}

void SubscriptionService::receive(std::int64_t request, const SKProductsResponse& response) {
  if (request != lastRequest_) return;
  ++lastRequest_;  // Ignores a second answer to the same request.
  productRequest_.reset();
  if (response.error) {
    retryAfter(repairUtf8(*response.error));
    return;
  }
  receiveProducts(response.products);
  Logger::writeLog(PLRLogLevel::debug, "SKProductsRequest did finish");
}

void SubscriptionService::receiveProducts(const std::vector<SKProduct>& storeProducts) {
  std::vector<SubscriptionProduct> products;
  for (const SKProduct& product : storeProducts) {
    SubscriptionProduct made = productOf(repaired(product));
    // A store may answer with more products than the request named.
    if (std::ranges::find(productList_, made.productId) != productList_.end()) {
      products.push_back(std::move(made));
    }
  }
  if (!requestProductsCallback_) {
    // The third word begins with U+0441, a letter that looks like "c". The text must stay so.
    Logger::writeLog(PLRLogLevel::debug, "Request products \u0441allback is lose");
    return;
  }
  // Before the callback, which reads the mark.
  change([&](SubscriptionInfo& info) {
    info.productIsChanged = info.products != products;
    if (info.productIsChanged) info.products = products;
  });
  requestProductsCallback_(products);
  logMissing(products);
}

void SubscriptionService::logMissing(const std::vector<SubscriptionProduct>& products) const {
  std::vector<std::string_view> missing;
  for (const std::string& id : productList_) {
    if (std::ranges::find(products, id, &SubscriptionProduct::productId) == products.end()) {
      missing.emplace_back(id);
    }
  }
  if (missing.empty()) return;
  Logger::writeLog(PLRLogLevel::debug, [&] {
    return fmt::format("Not found any products for list: \n\t\t{}", fmt::join(missing, ",\n\t\t"));
  });
}

void SubscriptionService::retryAfter(const std::string& error) {
  const std::int64_t seconds = requestAttempt_ * requestTimeout;
  Logger::writeLog(PLRLogLevel::debug,
                   [&] { return fmt::format("Request products failed with error: {}", error); });
  Logger::writeLog(PLRLogLevel::debug,
                   [&] { return fmt::format("Retry request products after {} seconds", seconds); });
  requestAttempt_ = std::min(requestAttempt_ + 1, longestRequestWait);
  requestRetry_ =
      executor_.after(std::chrono::seconds(seconds), run_.callback([this] { startRequest(); }));
}

void SubscriptionService::resetSendProductsMark() {
  change([](SubscriptionInfo& info) { info.productIsChanged = false; });
}

void SubscriptionService::markAsRestoredHistory() {
  change([](SubscriptionInfo& info) { info.alreadyRestored = true; });
}

void SubscriptionService::markAsSendRestoredHistory() {
  change([](SubscriptionInfo& info) { info.alreadySendRestoreEvent = true; });
}

void SubscriptionService::resetHistoryMark() {
  change([](SubscriptionInfo& info) {
    info.alreadyRestored = false;
    info.alreadySendRestoreEvent = false;
  });
}

void SubscriptionService::processTransactions(
    const std::vector<SKPaymentTransaction>& transactions) {
  TransactionTable table;
  for (const SKPaymentTransaction& transaction : transactions) {
    const auto& original = transaction.originalTransaction;
    if (!original || !original->transactionIdentifier) continue;
    const std::string& id = *original->transactionIdentifier;
    std::vector<std::string>& ids = table[transaction.payment.productIdentifier];
    // An identifier that comes again restarts the product's list.
    if (std::ranges::find(ids, id) != ids.end()) ids.clear();
    ids.push_back(id);
  }
  processTransactions(table);
}

void SubscriptionService::processTransactions(const TransactionTable& transactions) {
  change([&](SubscriptionInfo& info) {
    info.restoredTransaction.clear();
    for (const auto& [productId, ids] : transactions) {
      info.restoredTransaction.push_back({.productID = productId, .transactionIds = ids});
    }
  });
}

std::optional<SubscriptionService::RestoredHistory> SubscriptionService::getDataForSBSREvent() {
  const auto row = info();
  if (row->restoredTransaction.empty()) return std::nullopt;
  RestoredHistory history{.transactions = row->restoredTransaction, .currencyCode = {}};
  if (!row->products.empty()) history.currencyCode = row->products.front().currencyCode;
  return history;
}

void SubscriptionService::clearSubscriptionHistory() {
  change([](SubscriptionInfo& info) { info.restoredTransaction.clear(); });
}

SubscriptionProduct SubscriptionService::productOf(const SKProduct& product) const {
  return subscriptionProductOf(product, facts_.hasStoreDiscounts());
}

bool SubscriptionService::checkIfContains(const SubscriptionProduct& product) {
  auto& known = info()->products;
  if (std::ranges::find(known, product) != known.end()) return true;
  known.push_back(product);
  return false;
}

void SubscriptionService::storeProducts() {
  change([](SubscriptionInfo&) {});  // checkIfContains() has changed the row in memory.
}

std::optional<SubscriptionProduct> SubscriptionService::findLocalProduct(
    const std::string& productId) {
  const auto known = info()->products;
  const auto found = std::ranges::find(known, productId, &SubscriptionProduct::productId);
  if (found == known.end()) return std::nullopt;
  return *found;
}

}  // namespace pelorino
