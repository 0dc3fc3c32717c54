#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace pelorino {

/// Push messages can reach the device, or can no longer.
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

/// The user has opened a push message.
struct PushOpened {
  static constexpr std::string_view code = "po";
  std::int64_t timestamp = 0;  ///< Of the opening.
  std::int64_t pushId = 0;
  std::optional<std::string> button;
  std::optional<std::string> inExperiments;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("timestamp", self.timestamp);
    visit("pushId", self.pushId);
    visit("button", self.button);
    visit("inExperiments", self.inExperiments);
  }
};

}  // namespace pelorino
