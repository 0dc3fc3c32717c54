#pragma once

#include <pelorino/SKDecimal.h>

#include <optional>
#include <string>
#include <vector>

/// The region and the currency of a price.
struct SKLocale {
  std::string identifier;                   ///< Such as "en_US" or "en_US@currency=USD".
  std::optional<std::string> regionCode;    ///< ISO 3166. Default: from the identifier.
  std::optional<std::string> currencyCode;  ///< ISO 4217. Default: from the identifier.
};

/// A lower price: introductory, or an offer. An offer without an identifier is not reported.
struct SKProductDiscount {
  std::optional<std::string> identifier;
  SKDecimal price;
};

/// A product that a store sells.
struct SKProduct {
  std::string productIdentifier;
  SKDecimal price;
  SKLocale priceLocale;
  std::optional<SKProductDiscount> introductoryPrice;
  std::vector<SKProductDiscount> discounts;
};
