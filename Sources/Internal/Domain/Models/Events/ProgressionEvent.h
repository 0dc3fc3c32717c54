#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "JsonCoding.h"
#include "Resources.h"

namespace pelorino {

/// How a stretch of play went.
struct ProgressionEventParams {
  bool success = false;
  std::optional<std::int64_t> duration;  ///< Seconds.
  std::optional<std::int64_t> difficulty;
  std::optional<std::string> source;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("success", self.success);
    visit("duration", self.duration);
    visit("difficulty", self.difficulty);
    visit("source", self.source);
  }
};

/// A stretch of play has been finished.
struct ProgressionEvent {
  static constexpr std::string_view code = "pe";
  std::int64_t timestamp = 0;
  std::int64_t sessionId = 0;
  std::int64_t level = 0;
  std::string name;
  Resources spent;
  Resources earned;
  ProgressionEventParams parameters;
  std::optional<std::string> inExperiments;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("timestamp", self.timestamp);
    visit("sessionId", self.sessionId);
    visit("level", self.level);
    visit("name", self.name);
    visit(Field("spent").leftOutWhenEmpty(), self.spent);
    visit(Field("earned").leftOutWhenEmpty(), self.earned);
    visit("parameters", self.parameters);
    visit("inExperiments", self.inExperiments);
  }
};

}  // namespace pelorino
