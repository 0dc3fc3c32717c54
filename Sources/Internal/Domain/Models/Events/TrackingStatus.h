#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pelorino {

/// Tracking has been switched on or off.
struct TrackingStatus {
  static constexpr std::string_view code = "ts";
  std::int64_t timestamp = 0;
  bool trackingAllowed = false;
  std::optional<std::vector<std::string>> inProgress;
  std::optional<std::string> inExperiments;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("timestamp", self.timestamp);
    visit("trackingAllowed", self.trackingAllowed);
    visit("inProgress", self.inProgress);
    visit("inExperiments", self.inExperiments);
  }
};

}  // namespace pelorino
