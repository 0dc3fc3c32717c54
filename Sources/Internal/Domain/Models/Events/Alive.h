#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace pelorino {

/// A sign of life while the application is in the foreground.
struct Alive {
  static constexpr std::string_view code = "al";
  std::int64_t timestamp = 0;
  std::optional<std::string> inExperiments;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("timestamp", self.timestamp);
    visit("inExperiments", self.inExperiments);
  }
};

}  // namespace pelorino
