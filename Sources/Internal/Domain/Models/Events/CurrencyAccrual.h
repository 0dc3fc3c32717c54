#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "Resources.h"

namespace pelorino {

/// What came in since the last one, by its source.
struct CurrencyAccrual {
  static constexpr std::string_view code = "ca";
  std::int64_t timestamp = 0;  ///< Of the last accrual, where an earlier run left it behind.
  std::int64_t sessionId = 0;
  std::int64_t level = 0;
  std::optional<std::map<std::string, Resources>> earned;
  std::optional<std::map<std::string, Resources>> bought;
  std::optional<std::string> inExperiments;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("timestamp", self.timestamp);
    visit("sessionId", self.sessionId);
    visit("level", self.level);
    visit("earned", self.earned);
    visit("bought", self.bought);
    visit("inExperiments", self.inExperiments);
  }
};

}  // namespace pelorino
