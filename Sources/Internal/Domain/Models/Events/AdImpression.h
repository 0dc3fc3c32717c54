#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "JsonCoding.h"

namespace pelorino {

/// An advertisement has been shown and paid.
struct AdImpression {
  static constexpr std::string_view code = "adrv";
  std::int64_t timestamp = 0;
  std::int64_t sessionId = 0;
  std::string source = "sdk";
  std::string network;
  std::optional<std::string> placement;
  std::optional<std::string> unit;
  double revenue = 0.0;
  std::optional<std::vector<std::string>> inProgress;
  std::optional<std::string> inExperiments;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("timestamp", self.timestamp);
    visit("sessionId", self.sessionId);
    visit("source", self.source);
    visit(Field("ad_network").labelled("network"), self.network);
    visit("placement", self.placement);
    visit(Field("ad_unit").labelled("unit"), self.unit);
    visit("revenue", self.revenue);
    visit("inProgress", self.inProgress);
    visit("inExperiments", self.inExperiments);
  }
};

}  // namespace pelorino
