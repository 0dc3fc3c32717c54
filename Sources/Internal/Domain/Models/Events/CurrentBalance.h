#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "Resources.h"

namespace pelorino {

/// What the user owns. Known not to be empty.
struct CurrentBalance {
  static constexpr std::string_view code = "cb";
  std::int64_t timestamp = 0;
  std::int64_t sessionId = 0;
  std::int64_t level = 0;
  Resources balance;
  std::optional<std::string> inExperiments;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("timestamp", self.timestamp);
    visit("sessionId", self.sessionId);
    visit("level", self.level);
    visit("balance", self.balance);
    visit("inExperiments", self.inExperiments);
  }
};

}  // namespace pelorino
