#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "JsonCoding.h"
#include "Resources.h"

namespace pelorino {

/// A purchase paid with the application's own currencies.
struct VirtualCurrencyPayment {
  static constexpr std::string_view code = "vp";
  std::int64_t timestamp = 0;
  std::int64_t sessionId = 0;
  std::int64_t level = 0;
  std::string purchaseId;
  std::int64_t purchaseAmount = 0;
  Resources purchasePrice;
  std::string purchaseType;
  std::optional<std::vector<std::string>> inProgress;
  std::optional<std::string> inExperiments;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("timestamp", self.timestamp);
    visit("sessionId", self.sessionId);
    visit("level", self.level);
    visit("purchaseId", self.purchaseId);
    visit("purchaseAmount", self.purchaseAmount);
    visit(Field("purchasePrice").entriesLabelled("currency", "price"), self.purchasePrice);
    visit("purchaseType", self.purchaseType);
    visit("inProgress", self.inProgress);
    visit("inExperiments", self.inExperiments);
  }
};

}  // namespace pelorino
