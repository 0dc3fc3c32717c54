#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>

// Bounds that several rules use. A bound of a single argument is in its rule.

namespace pelorino {

/// Both bounds are inclusive.
struct Interval {
  std::int64_t min;
  std::int64_t max;
};

constexpr std::int64_t integerMaximum = std::numeric_limits<std::int32_t>::max();
constexpr double finiteMaximum = std::numeric_limits<double>::max();

constexpr Interval levelInterval{1, integerMaximum - 1};
constexpr Interval amountInterval{1, integerMaximum};
constexpr Interval zeroOrMore{0, integerMaximum};

constexpr std::size_t maximalResourceKey = 24;  ///< Characters.

}  // namespace pelorino
