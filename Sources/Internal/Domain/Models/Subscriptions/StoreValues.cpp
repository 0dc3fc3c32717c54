#include "StoreValues.h"

#include <memory>
#include <utility>

#include "LocaleIdentifier.h"
#include "Text.h"

namespace pelorino {
namespace {

void repair(std::string& text) {
  text = repairUtf8(std::move(text));
}

void repair(std::optional<std::string>& text) {
  if (text) repair(*text);
}

Decimal decimalOf(const SKDecimal& number) {
  return Decimal::parse(number.text()).value_or(Decimal());
}

std::string regionCode(const SKLocale& locale) {
  return locale.regionCode ? *locale.regionCode : regionCodeOf(locale.identifier).value_or("");
}

std::string currencyCode(const SKLocale& locale) {
  return locale.currencyCode ? *locale.currencyCode
                             : currencyCodeOf(locale.identifier).value_or("");
}

std::optional<std::map<std::string, Decimal>> getDiscouts(const SKProduct& product) {
  std::map<std::string, Decimal> prices;
  for (const SKProductDiscount& discount : product.discounts) {
    if (discount.identifier) {  // It is the key in the report.
      prices.insert_or_assign(*discount.identifier, decimalOf(discount.price));
    }
  }
  if (prices.empty()) return std::nullopt;
  return prices;
}

}  // namespace

SKProduct repaired(SKProduct product) {
  repair(product.productIdentifier);
  repair(product.priceLocale.identifier);
  repair(product.priceLocale.regionCode);
  repair(product.priceLocale.currencyCode);
  for (SKProductDiscount& discount : product.discounts) repair(discount.identifier);
  return product;
}

SKPaymentTransaction repaired(SKPaymentTransaction transaction) {
  repair(transaction.transactionIdentifier);
  repair(transaction.payment.productIdentifier);
  if (transaction.originalTransaction) {
    // The original's own original is not needed. The chain might even be a circle.
    SKPaymentTransaction original;
    original.transactionIdentifier = transaction.originalTransaction->transactionIdentifier;
    original.payment = transaction.originalTransaction->payment;
    transaction.originalTransaction =
        std::make_shared<const SKPaymentTransaction>(repaired(std::move(original)));
  }
  return transaction;
}

SubscriptionProduct subscriptionProductOf(const SKProduct& product, bool withDiscounts) {
  SubscriptionProduct made{.productId = product.productIdentifier,
                           .price = decimalOf(product.price),
                           .regionCode = regionCode(product.priceLocale),
                           .currencyCode = currencyCode(product.priceLocale),
                           .introductoryPrice = {},
                           .discounts = {}};
  if (!withDiscounts) return made;
  if (product.introductoryPrice)
    made.introductoryPrice = decimalOf(product.introductoryPrice->price);
  made.discounts = getDiscouts(product);
  return made;
}

}  // namespace pelorino
