// Subscriptions: what the store sells, what the host has bought before, and each payment.

#include <fmt/format.h>

#include <utility>

#include "AnalyticsLogic.h"
#include "HostClosure.h"
#include "Logger.h"
#include "RestoredTransactionsEvent.h"
#include "SubscriptionProductsEvent.h"

namespace pelorino {
namespace {

void logRenewal(const std::string& orderId) {
  Logger::writeLog(PLRLogLevel::debug, [&] {
    return fmt::format("Subscription payment with orderId [{}] is renewal", orderId);
  });
}

/// The identifier of the purchase that the transaction began with, if any is known.
std::optional<std::string> orderIdOf(const SKPaymentTransaction& transaction) {
  const auto& original = transaction.originalTransaction;
  return original && original->transactionIdentifier ? original->transactionIdentifier
                                                     : transaction.transactionIdentifier;
}

bool isRenewal(const SKPaymentTransaction& transaction) {
  const auto& original = transaction.originalTransaction;
  return transaction.transactionIdentifier &&
         (!original || original->transactionIdentifier != transaction.transactionIdentifier);
}

}  // namespace

bool AnalyticsLogic::checkIfNeedResetHistory(const Config& received) const {
  const auto stored = services_.stateManager->getActiveProject()->configuration.sbsConfigVersion;
  const auto isSet = [](const auto& version) { return version.value_or(0) != 0; };
  return isSet(stored) && isSet(received.sbsConfigVersion) && stored != received.sbsConfigVersion;
}

void AnalyticsLogic::startSubscriptionsService() {
  const auto& bundles = services_.stateManager->getActiveProject()->configuration.sbsBundles;
  if (!bundles) return;
  services_.subscriptionService->requestUserProducts(
      *bundles, [weak = weak_from_this()](const std::vector<SubscriptionProduct>& products) {
        if (const auto self = weak.lock()) self->receiveProducts(products);
      });
}

void AnalyticsLogic::receiveProducts(const std::vector<SubscriptionProduct>& products) {
  if (products.empty()) return;
  SubscriptionService& subscriptions = *services_.subscriptionService;
  if (subscriptions.isProductsChanged()) {
    addEvent(SubscriptionProductsEvent{.products = products});
    services_.reportService->sendBufferedEvents();
    subscriptions.resetSendProductsMark();
    subscriptions.resetHistoryMark();
  }
  sendSubscriptionsHistoryEvent();
}

void AnalyticsLogic::sendSubscriptionsHistoryEvent() {
  SubscriptionService& subscriptions = *services_.subscriptionService;
  if (!subscriptions.isNeedSendRestoredHistory()) return;
  auto history = subscriptions.getDataForSBSREvent();
  if (!history) {
    Logger::writeLog(PLRLogLevel::debug,
                     "SubscriptionsHistory: No information about completed transactions");
    return;
  }
  if (!history->currencyCode) {
    Logger::writeLog(PLRLogLevel::debug,
                     "SubscriptionsHistory: Not enough data to send the event, \n"
                     "\tmissing product CurrencyCode");
    return;
  }
  addEvent(RestoredTransactionsEvent{.currencyCode = std::move(*history->currencyCode),
                                     .transactions = std::move(history->transactions)});
  services_.reportService->sendBufferedEvents();
  subscriptions.markAsRestoredHistory();
  subscriptions.markAsSendRestoredHistory();
  subscriptions.clearSubscriptionHistory();
}

void AnalyticsLogic::isRestoreTransactionHistoryRequired(BoolHandler completionHandler) {
  callHost(completionHandler, services_.subscriptionService->isNeedRestoreHistory());
}

template <class Transactions>
void AnalyticsLogic::receiveHistory(const Transactions& transactions) {
  SubscriptionService& subscriptions = *services_.subscriptionService;
  if (!subscriptions.isNeedRestoreHistory()) return;
  subscriptions.markAsRestoredHistory();
  if (transactions.empty()) {
    Logger::writeLog(PLRLogLevel::debug, "subscriptionHistory transactions is empty");
    return;
  }
  subscriptions.processTransactions(transactions);
  sendSubscriptionsHistoryEvent();
}

void AnalyticsLogic::subscriptionHistory(SubscriptionHistoryCall transactions) {
  receiveHistory(transactions);
}

void AnalyticsLogic::subscriptionHistory(EngineSubscriptionHistoryCall transactions) {
  receiveHistory(transactions);
}

void AnalyticsLogic::addSubscriptionPayment(SubscriptionPayment payment) {
  const std::string orderId = payment.orderId;
  addEvent(std::move(payment));
  services_.projectService->markCurrencyPayment(orderId);
}

void AnalyticsLogic::subscriptionPayment(SubscriptionPaymentCall call) {
  if (!hasSession()) return;
  const auto orderId = orderIdOf(call.transaction);
  if (!orderId) {
    Logger::writeLog(PLRLogLevel::error, "Subscription payment transactionIdentifier is nil");
    return;
  }
  const SubscriptionProduct product = services_.subscriptionService->productOf(call.product);
  const bool isNewOrder = !services_.projectService->isCurrencyPaymentMarked(*orderId);
  if (isNewOrder) {
    addSubscriptionPayment({.orderId = *orderId,
                            .productId = product.productId,
                            .regionCode = product.regionCode,
                            .currencyCode = product.currencyCode});
  } else if (isRenewal(call.transaction)) {
    logRenewal(*orderId);
  }
  const bool isNewProduct = !services_.subscriptionService->checkIfContains(product);
  if (isNewProduct) {
    addEvent(SubscriptionProductsEvent{.products = {product}});
    services_.subscriptionService->storeProducts();
  }
  if (!isNewOrder && !isNewProduct) return;
  generatePeopleEvent(false);
  services_.reportService->sendBufferedEvents();
}

void AnalyticsLogic::subscriptionPayment(EngineSubscriptionPaymentCall call) {
  if (!hasSession()) return;
  if (services_.projectService->isCurrencyPaymentMarked(call.transactionId)) {
    logRenewal(call.transactionId);
    return;
  }
  const auto product = services_.subscriptionService->findLocalProduct(call.productId);
  addSubscriptionPayment({.orderId = std::move(call.transactionId),
                          .productId = std::move(call.productId),
                          .regionCode = product ? product->regionCode : "",
                          .currencyCode = product ? product->currencyCode : ""});
  services_.reportService->sendBufferedEvents();
}

}  // namespace pelorino
