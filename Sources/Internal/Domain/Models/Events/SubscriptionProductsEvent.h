#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "SubscriptionProduct.h"

namespace pelorino {

/// The products that the backend asks about, as the store sells them.
struct SubscriptionProductsEvent {
  static constexpr std::string_view code = "sbsp";
  std::int64_t timestamp = 0;
  std::vector<SubscriptionProduct> products;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("timestamp", self.timestamp);
    visit("products", self.products);
  }
};

}  // namespace pelorino
