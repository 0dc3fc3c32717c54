#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace pelorino {

/// What a user did with an amount of a resource within a level. The numbers are stored.
enum class LevelResourceType : int {
  earned = 0,
  bought = 1,
  spent = 2,
};

/// "earned", "bought" or "spent".
[[nodiscard]] constexpr std::string_view description(LevelResourceType type) {
  constexpr std::array<std::string_view, 3> texts = {"earned", "bought", "spent"};
  return texts.at(static_cast<std::size_t>(type));
}

}  // namespace pelorino
