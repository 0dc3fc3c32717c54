#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace pelorino {

/// Push messages can reach the device, or no longer.
struct PushToken {
  static constexpr std::string_view code = "pt";
  std::int64_t timestamp = 0;
  bool isAllowed = false;
  std::string token;
  std::optional<std::string> inExperiments;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("timestamp", self.timestamp);
    visit("isAllowed", self.isAllowed);
    visit("token", self.token);
    visit("inExperiments", self.inExperiments);
  }
};

}  // namespace pelorino
