#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Resources.h"
#include "Text.h"

// Copies of a host's values, whose texts are repaired where they are not UTF-8. They are made on
// the caller's thread. Copies of a store's values are in StoreValues.h.

namespace pelorino {

[[nodiscard]] inline std::string repaired(std::string_view text) {
  return repairUtf8(std::string(text));
}

[[nodiscard]] inline std::vector<std::string> repaired(const std::vector<std::string>& texts) {
  std::vector<std::string> copies;
  for (const std::string& text : texts) copies.push_back(repaired(text));
  return copies;
}

[[nodiscard]] inline Resources repaired(const Resources& resources) {
  Resources copies;
  for (const auto& [name, amount] : resources) copies.insert_or_assign(repaired(name), amount);
  return copies;
}

template <class Value>
[[nodiscard]] auto repaired(const std::optional<Value>& value) {
  return value ? std::optional(repaired(*value)) : std::nullopt;
}

}  // namespace pelorino
