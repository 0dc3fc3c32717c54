#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pelorino {

/// A stretch in the foreground has ended.
struct UserEngagement {
  static constexpr std::string_view code = "ue";
  std::int64_t timestamp = 0;
  std::int64_t level = 0;
  std::int64_t length = 0;  ///< Whole seconds, rounded down.
  std::int64_t sessionId = 0;
  std::optional<std::vector<std::string>> inProgress;
  std::optional<std::string> inExperiments;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("timestamp", self.timestamp);
    visit("level", self.level);
    visit("length", self.length);
    visit("sessionId", self.sessionId);
    visit("inProgress", self.inProgress);
    visit("inExperiments", self.inExperiments);
  }
};

}  // namespace pelorino
