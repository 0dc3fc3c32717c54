#include "MigrationObject.h"

#include <fmt/format.h>

namespace pelorino {

void decode(const JsonView& json, PeopleProperties& properties) {
  if (!json.isObject()) throwWrongType(json, "an object");
  json.forEachMember([&](std::string key, const JsonView& member) {
    properties.erase(key);
    if (member.isList() || member.isObject()) return;
    if (auto value = PeopleValueType::from(member.value())) {
      properties.emplace(std::move(key), *std::move(value));
    }
  });
}

// The odd blanks belong to the log's format.
std::string MigrationObject::description() const {
  std::string text;
  const auto line = [&](const char* label, const std::optional<std::string>& value) {
    if (value) text += fmt::format("\t{}: {}\n", label, *value);
  };
  line("deviceId", deviceId);
  line("prevDeviceId", prevDeviceId);
  line("userId", userId);
  line("prevUserId", prevUserId);
  text += fmt::format("\ttrackingAvailable: {}\n", trackingAvailable);
  if (level) text += fmt::format("\tlevel: {}\n", *level);
  std::vector<std::string> card;
  for (const auto& [key, value] : userCard) {
    card.push_back(fmt::format("\t\t{}: {}", key, value.description()));
  }
  text += fmt::format("\t userCardInfo: \n{}\n", fmt::join(card, "\n"));
  if (!transactionIds.empty()) {
    text += fmt::format("\ttransactionIds: \n\t\t{}\n", fmt::join(transactionIds, ",\n\t\t"));
  }
  if (!tutorCompletedSteps.empty()) {
    text += fmt::format("\ttutorCompletedSteps: {}\n", fmt::join(tutorCompletedSteps, ", "));
  }
  return text;
}

}  // namespace pelorino
