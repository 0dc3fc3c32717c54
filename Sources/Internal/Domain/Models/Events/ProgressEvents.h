#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "JsonCoding.h"
#include "Resources.h"

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

/// A level has been reached. The sums are those of the level before it.
struct LevelUp {
  static constexpr std::string_view code = "lu";
  std::int64_t sessionId = 0;
  std::int64_t timestamp = 0;
  std::int64_t level = 0;  ///< The new level.
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

/// How a progression went.
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

/// A progression has been finished.
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

/// The currency that a user got since the last such event, by its source.
struct CurrencyAccrual {
  static constexpr std::string_view code = "ca";
  std::int64_t timestamp = 0;  ///< For sums of an earlier run, the time of their last accrual.
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

/// The amounts that the user owns. Never empty.
struct CurrentBalance {
  static constexpr std::string_view code = "cb";
  std::int64_t timestamp = 0;
  std::int64_t sessionId = 0;
  std::int64_t level = 0;
  Resources balance;
  std::optional<std::string> inExperiments;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("timestamp", self.timestamp);
    visit("sessionId", self.sessionId);
    visit("level", self.level);
    visit("balance", self.balance);
    visit("inExperiments", self.inExperiments);
  }
};

}  // namespace pelorino
