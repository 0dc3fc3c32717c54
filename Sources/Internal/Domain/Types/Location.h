#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace pelorino {

/// A progression that the user has started and not finished.
struct Location {
  std::string name;
  std::optional<std::string> source;
  std::optional<std::int64_t> difficulty;
  std::int64_t startTimestamp = 0;  ///< Milliseconds since 1970.
};

}  // namespace pelorino
