#pragma once

#include <string>
#include <vector>

#include "JsonCoding.h"

namespace pelorino {

/// Past purchases of one product, as the host has restored them.
struct RestoredTransaction {
  std::string productID;
  std::vector<std::string> transactionIds;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("productID", self.productID);
    visit("transactionIds", self.transactionIds);
  }
};

}  // namespace pelorino
