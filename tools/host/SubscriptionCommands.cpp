#include "SubscriptionCommands.h"

#include <pelorino/PLRAnalytics.h>
#include <pelorino/PLREngineWrapper.h>
#include <pelorino/PLRHost.h>

#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace pelorino::host {

namespace {

/// Answers every request at once, always the same.
class CommandStore final : public PLRStore {
 public:
  explicit CommandStore(SKProductsResponse response) : response_(std::move(response)) {}

  std::shared_ptr<SKProductsRequest> makeProductsRequest(const std::set<std::string>&,
                                                         ProductsHandler handler) override {
    return std::make_shared<Request>(response_, std::move(handler));
  }

 private:
  class Request final : public SKProductsRequest {
   public:
    Request(SKProductsResponse response, ProductsHandler handler)
        : response_(std::move(response)), handler_(std::move(handler)) {}

    void start() override { handler_(response_); }
    void cancel() override {}

   private:
    SKProductsResponse response_;
    ProductsHandler handler_;
  };

  SKProductsResponse response_;
};

SKLocale localeOf(const Arguments& fields) {
  fields.allowOnly({"identifier", "regionCode", "currencyCode"});
  return {.identifier = fields.maybeText("identifier").value_or(""),
          .regionCode = fields.maybeText("regionCode"),
          .currencyCode = fields.maybeText("currencyCode")};
}

SKProductDiscount discountOf(const Arguments& fields) {
  fields.allowOnly({"identifier", "price"});
  return {.identifier = fields.maybeText("identifier"), .price = fields.number("price")};
}

SKProduct productOf(const Arguments& fields) {
  fields.allowOnly({"productIdentifier", "price", "priceLocale", "introductoryPrice", "discounts"});
  SKProduct product;
  product.productIdentifier = fields.text("productIdentifier");
  product.price = fields.number("price");
  if (const auto locale = fields.maybeObject("priceLocale")) {
    product.priceLocale = localeOf(*locale);
  }
  if (const auto price = fields.maybeObject("introductoryPrice")) {
    product.introductoryPrice = discountOf(*price);
  }
  for (const Arguments& discount : fields.maybeObjects("discounts")) {
    product.discounts.push_back(discountOf(discount));
  }
  return product;
}

SKPaymentTransaction transactionOf(const Arguments& fields) {
  fields.allowOnly({"transactionIdentifier", "payment", "originalTransaction"});
  SKPaymentTransaction transaction;
  transaction.transactionIdentifier = fields.maybeText("transactionIdentifier");
  if (const auto payment = fields.maybeObject("payment")) {
    payment->allowOnly({"productIdentifier"});
    transaction.payment.productIdentifier = payment->text("productIdentifier");
  }
  if (const auto original = fields.maybeObject("originalTransaction")) {
    transaction.originalTransaction =
        std::make_shared<SKPaymentTransaction>(transactionOf(*original));
  }
  return transaction;
}

void setStore(const Arguments& arguments) {
  SKProductsResponse response{.products = {}, .error = arguments.maybeText("error")};
  if (!response.error && !arguments.has("products")) {
    throw CommandError("neither \"products\" nor \"error\" is there");
  }
  for (const Arguments& product : arguments.maybeObjects("products")) {
    response.products.push_back(productOf(product));
  }
  PLRHost::setStore(std::make_shared<CommandStore>(std::move(response)));
}

void subscriptionHistory(const Arguments& arguments) {
  std::vector<SKPaymentTransaction> transactions;
  for (const Arguments& transaction : arguments.maybeObjects("transactions")) {
    transactions.push_back(transactionOf(transaction));
  }
  PLRAnalytics::subscriptionHistory(transactions);
}

void subscriptionPayment(const Arguments& arguments) {
  PLRAnalytics::subscriptionPayment(transactionOf(arguments.object("transaction")),
                                    productOf(arguments.object("product")));
}

void engineSubscriptionHistory(const Arguments& arguments) {
  std::map<std::string, std::vector<std::string>> transactions;
  const Arguments table = arguments.object("transactions");
  for (const auto& [productId, ignored] : table.fields()) {
    auto ids = table.maybeTexts(productId);
    if (!ids) refuse(productId, "a list");
    transactions.emplace(productId, std::move(*ids));
  }
  PLREngineWrapper::engineSubscriptionHistory(transactions);
}

void engineSubscriprtionPayment(const Arguments& arguments) {
  PLREngineWrapper::engineSubscriprtionPayment(arguments.text("productId"),
                                               arguments.text("transactionId"));
}

}  // namespace

CommandTable subscriptionCommands() {
  return {
      {"host.setStore", command({R"({"products":[{"productIdentifier":"product","price":4.99,
                    "priceLocale":{"identifier":"en_US","regionCode":"US","currencyCode":"USD"},
                    "introductoryPrice":{"identifier":"first","price":0.99},
                    "discounts":[{"identifier":"summer","price":1.99}]}]})",
                                 R"({"error":"offline"})"},
                                setStore)},
      {"isRestoreTransactionHistoryRequired",
       asking(PLRAnalytics::isRestoreTransactionHistoryRequired)},
      {"subscriptionHistory", command({R"({"transactions":[{"transactionIdentifier":"t2",
                    "payment":{"productIdentifier":"product"},
                    "originalTransaction":{"transactionIdentifier":"t"}}]})"},
                                      subscriptionHistory)},
      {"subscriptionPayment", command({R"({"transaction":{"transactionIdentifier":"t",
                    "payment":{"productIdentifier":"product"}},
                    "product":{"productIdentifier":"product","price":4.99}})"},
                                      subscriptionPayment)},
      {"engine.engineSubscriptionHistory",
       command({R"({"transactions":{"product":["t"]}})"}, engineSubscriptionHistory)},
      {"engine.engineSubscriprtionPayment",
       command({R"({"productId":"product","transactionId":"t"})"}, engineSubscriprtionPayment)},
  };
}

}  // namespace pelorino::host
