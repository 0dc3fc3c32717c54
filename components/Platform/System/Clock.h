#pragma once

#include <cstdint>

namespace pelorino {

/// The device clock. It may jump, forward and backward. Any thread.
class Clock {
 public:
  virtual ~Clock() = default;

  /// Milliseconds since 1970, rounded to the nearest; negative before.
  [[nodiscard]] virtual std::int64_t milliseconds() const = 0;
};

}  // namespace pelorino
