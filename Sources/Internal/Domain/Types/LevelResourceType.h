#pragma once

namespace pelorino {

/// What a user did with an amount of a resource within a level. The numbers are stored.
enum class LevelResourceType : int {
  earned = 0,
  bought = 1,
  spent = 2,
};

}  // namespace pelorino
