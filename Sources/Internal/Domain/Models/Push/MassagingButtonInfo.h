#pragma once

#include <optional>
#include <string>

#include "JsonCoding.h"

namespace pelorino {

/// An action button of a push notification.
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

}  // namespace pelorino
