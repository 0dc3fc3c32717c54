#include "SubscriptionLogic.h"

#include <fmt/format.h>

#include <utility>

#include "Logger.h"
#include "PaymentEvents.h"

namespace pelorino {
namespace {

void logRenewal(const std::string& orderId) {
  Logger::writeLog(PLRLogLevel::debug, [&] {
    return fmt::format("Subscription payment with orderId [{}] is renewal", orderId);
  });
}

/// The identifier of the original purchase, or else of the transaction itself, if it has one.
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

bool SubscriptionLogic::checkIfNeedResetHistory(const Config& received) const {
  const auto stored = stateManager_.getActiveProject()->configuration.sbsConfigVersion;
  const auto isSet = [](const auto& version) { return version.value_or(0) != 0; };
  return isSet(stored) && isSet(received.sbsConfigVersion) && stored != received.sbsConfigVersion;
}

void SubscriptionLogic::startSubscriptionsService() {
  const auto& bundles = stateManager_.getActiveProject()->configuration.sbsBundles;
  if (!bundles) return;
  subscriptionService_.requestUserProducts(
      *bundles,
      [this](const std::vector<SubscriptionProduct>& products) { receiveProducts(products); });
}

void SubscriptionLogic::receiveProducts(const std::vector<SubscriptionProduct>& products) {
  if (products.empty()) return;
  if (subscriptionService_.isProductsChanged()) {
    events_.add(SubscriptionProductsEvent{.products = products});
    reportService_.sendBufferedEvents();
    subscriptionService_.resetSendProductsMark();
    subscriptionService_.resetHistoryMark();
  }
  sendSubscriptionsHistoryEvent();
}

void SubscriptionLogic::sendSubscriptionsHistoryEvent() {
  if (!subscriptionService_.isNeedSendRestoredHistory()) return;
  auto history = subscriptionService_.getDataForSBSREvent();
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
  events_.add(RestoredTransactionsEvent{.currencyCode = std::move(*history->currencyCode),
                                        .transactions = std::move(history->transactions)});
  reportService_.sendBufferedEvents();
  // After the event is stored: a crash in between repeats the history, and loses none.
  subscriptionService_.markAsRestoredHistory();
  subscriptionService_.markAsSendRestoredHistory();
  subscriptionService_.clearSubscriptionHistory();
}

bool SubscriptionLogic::answer(RestoreTransactionHistoryQuery /*query*/) {
  return subscriptionService_.isNeedRestoreHistory();
}

template <class Transactions>
void SubscriptionLogic::receiveHistory(const Transactions& transactions) {
  if (!subscriptionService_.isNeedRestoreHistory()) return;
  subscriptionService_.markAsRestoredHistory();  // An empty history is an answer, too.
  if (transactions.empty()) {
    Logger::writeLog(PLRLogLevel::debug, "subscriptionHistory transactions is empty");
    return;
  }
  subscriptionService_.processTransactions(transactions);
  sendSubscriptionsHistoryEvent();
}

void SubscriptionLogic::perform(const SubscriptionHistoryCall& call) {
  receiveHistory(call.transactions);
}

void SubscriptionLogic::perform(const EngineSubscriptionHistoryCall& call) {
  receiveHistory(call.transactions);
}

void SubscriptionLogic::addSubscriptionPayment(SubscriptionPayment payment) {
  const std::string orderId = payment.orderId;
  events_.add(std::move(payment));
  projectService_.markCurrencyPayment(orderId);
}

void SubscriptionLogic::perform(const SubscriptionPaymentCall& call) {
  if (!events_.hasSession()) return;
  const auto orderId = orderIdOf(call.transaction);
  if (!orderId) {
    Logger::writeLog(PLRLogLevel::error, "Subscription payment transactionIdentifier is nil");
    return;
  }
  const SubscriptionProduct product = subscriptionService_.productOf(call.product);
  const bool isNewOrder = !projectService_.isCurrencyPaymentMarked(*orderId);
  if (isNewOrder) {
    addSubscriptionPayment({.orderId = *orderId,
                            .productId = product.productId,
                            .regionCode = product.regionCode,
                            .currencyCode = product.currencyCode});
  } else if (isRenewal(call.transaction)) {
    logRenewal(*orderId);
  }
  const bool isNewProduct = !subscriptionService_.checkIfContains(product);
  if (isNewProduct) {
    events_.add(SubscriptionProductsEvent{.products = {product}});
    subscriptionService_.storeProducts();
  }
  if (!isNewOrder && !isNewProduct) return;
  events_.sendBufferedEvents();
}

void SubscriptionLogic::perform(EngineSubscriptionPaymentCall call) {
  if (!events_.hasSession()) return;
  if (projectService_.isCurrencyPaymentMarked(call.transactionId)) {
    logRenewal(call.transactionId);
    return;
  }
  const auto product = subscriptionService_.findLocalProduct(call.productId);
  addSubscriptionPayment({.orderId = std::move(call.transactionId),
                          .productId = std::move(call.productId),
                          .regionCode = product ? product->regionCode : "",
                          .currencyCode = product ? product->currencyCode : ""});
  reportService_.sendBufferedEvents();
}

}  // namespace pelorino
