#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "RestoredTransaction.h"

namespace pelorino {

/// The past purchases that the host has restored.
struct RestoredTransactionsEvent {
  static constexpr std::string_view code = "sbsr";
  std::int64_t timestamp = 0;
  std::string currencyCode;
  std::vector<RestoredTransaction> transactions;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("timestamp", self.timestamp);
    visit("currencyCode", self.currencyCode);
    visit("transactions", self.transactions);
  }
};

}  // namespace pelorino
