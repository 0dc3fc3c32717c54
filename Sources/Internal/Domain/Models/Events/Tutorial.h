#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pelorino {

/// A step of the tutorial.
struct Tutorial {
  static constexpr std::string_view code = "tr";
  std::int64_t timestamp = 0;
  std::int64_t sessionId = 0;
  std::int64_t level = 0;
  std::int64_t step = 0;
  std::optional<std::vector<std::string>> inProgress;
  std::optional<std::string> inExperiments;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("timestamp", self.timestamp);
    visit("sessionId", self.sessionId);
    visit("level", self.level);
    visit("step", self.step);
    visit("inProgress", self.inProgress);
    visit("inExperiments", self.inExperiments);
  }
};

}  // namespace pelorino
