#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pelorino {

/// A subscription has been paid.
struct SubscriptionPayment {
  static constexpr std::string_view code = "sbs";
  std::int64_t timestamp = 0;
  std::int64_t sessionId = 0;
  std::int64_t level = 0;
  std::string orderId;
  std::string productId;
  std::string regionCode;
  std::string currencyCode;
  std::optional<std::vector<std::string>> inProgress;
  std::optional<std::string> inExperiments;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("timestamp", self.timestamp);
    visit("sessionId", self.sessionId);
    visit("level", self.level);
    visit("orderId", self.orderId);
    visit("productId", self.productId);
    visit("regionCode", self.regionCode);
    visit("currencyCode", self.currencyCode);
    visit("inProgress", self.inProgress);
    visit("inExperiments", self.inExperiments);
  }
};

}  // namespace pelorino
