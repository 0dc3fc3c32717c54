#include "PaymentCalls.h"

#include <utility>

#include "Limits.h"
#include "Rule.h"
#include "ValidatorRules.h"

namespace pelorino {

std::optional<CurrencyAccrualCall> ValidatorRules::validateCurrencyAccrual(
    CurrencyAccrualCall call) {
  Rule rule("CurrencyAccrual");
  rule.text("The currency name", call.currencyName, 24);
  rule.text("The source", call.source, 32);
  rule.inInterval("The currency amount", call.currencyAmount, amountInterval);
  return rule.verdict(std::move(call));
}

std::optional<VirtualCurrencyPaymentCall> ValidatorRules::validateVirtualCurrencyPayment(
    VirtualCurrencyPaymentCall call) {
  Rule rule("VirtualCurrencyPayment");
  rule.inInterval("The purchase amount", call.purchaseAmount, amountInterval);
  call.resources = validateResorces(rule.method(), "resources dictionary", call.resources,
                                    maximalResourceKey, amountInterval);
  if (call.resources.empty()) {
    rule.fail("VirtualCurrencyPayment has empty Resources dictionary!");
  }
  rule.text("The purchase identifier", call.purchaseId, 32);
  rule.text("The purchase type", call.purchaseType, 96);
  return rule.verdict(std::move(call));
}

std::optional<RealCurrencyPaymentCall> ValidatorRules::validateRealCurrencyPayment(
    RealCurrencyPaymentCall call) {
  Rule rule("RealCurrencyPayment");
  const Label orderLabel = "The order id argument value";
  const Label productLabel = "The product id parameter value";
  rule.bound(orderLabel, call.orderId, 65);
  rule.bound(productLabel, call.productId, 255);
  rule.equalLength("The currency code parameter value", call.currencyCode, 3);
  rule.inInterval("The price argument value", call.price, -finiteMaximum, finiteMaximum);
  rule.notEmpty(orderLabel, call.orderId);
  rule.notEmpty(productLabel, call.productId);
  return rule.verdict(std::move(call));
}

std::optional<EngineSubscriptionPaymentCall> EngineSubscriptionPaymentCall::rule(
    EngineSubscriptionPaymentCall call) {
  if (Validator::isExcluded("sbs")) return std::nullopt;
  return ValidatorRules::validateSubscriptionPayment(std::move(call));
}

std::optional<EngineSubscriptionPaymentCall> ValidatorRules::validateSubscriptionPayment(
    EngineSubscriptionPaymentCall call) {
  Rule rule("SubscriptionPayment");
  rule.text("The product id argument value", call.productId, 255);
  rule.text("The transaction id argument value", call.transactionId, 255);
  return rule.verdict(std::move(call));
}

}  // namespace pelorino
