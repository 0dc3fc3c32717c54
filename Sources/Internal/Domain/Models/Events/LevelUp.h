#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "JsonCoding.h"
#include "Resources.h"

namespace pelorino {

/// A level has been reached, with the balance there and the sums of the level that ended.
struct LevelUp {
  static constexpr std::string_view code = "lu";
  std::int64_t sessionId = 0;
  std::int64_t timestamp = 0;
  std::int64_t level = 0;  ///< The one just reached.
  Resources balance;
  std::optional<Resources> spent;
  std::optional<Resources> earned;
  std::optional<Resources> bought;
  std::optional<std::vector<std::string>> inProgress;
  std::optional<std::string> inExperiments;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("sessionId", self.sessionId);
    visit("timestamp", self.timestamp);
    visit("level", self.level);
    visit(Field("balance").leftOutWhenEmpty(), self.balance);
    visit("spent", self.spent);
    visit("earned", self.earned);
    visit("bought", self.bought);
    visit("inProgress", self.inProgress);
    visit("inExperiments", self.inExperiments);
  }
};

}  // namespace pelorino
