#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "JsonCoding.h"

namespace pelorino {

/// A button of a notification. Nothing here interprets `activationMode`.
struct MassagingButtonInfo {
  std::string id;
  std::string text;
  std::optional<std::string> activationMode;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("id", self.id);
    visit("text", self.text);
    visit(Field("activationMode").nullWhenAbsent(), self.activationMode);
  }
};

/// A notification category: the buttons that a push may show.
struct MessagingCategory {
  std::int64_t idKey = -1;  ///< The row's id; never part of the JSON.
  std::string id;           ///< The name that the backend gives it.
  std::vector<MassagingButtonInfo> buttons;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("id", self.id);
    visit("buttons", self.buttons);
  }
};

}  // namespace pelorino
