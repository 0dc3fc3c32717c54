#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "AnyCodable.h"
#include "JsonCoding.h"
#include "PeopleValueType.h"

namespace pelorino {

/// An event that the host defines.
struct CustomEvent {
  static constexpr std::string_view code = "ce";
  std::int64_t timestamp = 0;
  std::int64_t sessionId = 0;
  std::int64_t level = 0;
  std::string name;
  AnyCodable::Object parameters;
  std::optional<std::vector<std::string>> inProgress;
  std::optional<std::string> inExperiments;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("timestamp", self.timestamp);
    visit("sessionId", self.sessionId);
    visit("level", self.level);
    visit("name", self.name);
    visit(Field("parameters").leftOutWhenEmpty(), self.parameters);
    visit("inProgress", self.inProgress);
    visit("inExperiments", self.inExperiments);
  }
};

/// Values of the user's card. Absent parameters mean that the card was cleared.
struct PeopleEvent {
  static constexpr std::string_view code = "pl";
  std::int64_t timestamp = 0;
  std::int64_t sessionId = 0;
  std::int64_t level = 0;
  std::optional<PeopleProperties> parameters;
  std::optional<std::vector<std::string>> inProgress;
  std::optional<std::string> inExperiments;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("timestamp", self.timestamp);
    visit("sessionId", self.sessionId);
    visit("level", self.level);
    visit(Field("parameters").nullWhenAbsent(), self.parameters);
    visit("inProgress", self.inProgress);
    visit("inExperiments", self.inExperiments);
  }
};

}  // namespace pelorino
