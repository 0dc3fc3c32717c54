#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pelorino {

/// A session begins. Its `timestamp` is the session's id, which the session's other events carry.
struct SessionStart {
  static constexpr std::string_view code = "ss";
  std::int64_t timestamp = 0;
  std::int64_t level = 0;
  std::optional<std::vector<std::string>> inProgress;
  std::optional<std::string> inExperiments;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("timestamp", self.timestamp);
    visit("level", self.level);
    visit("inProgress", self.inProgress);
    visit("inExperiments", self.inExperiments);
  }
};

}  // namespace pelorino
