#pragma once

#include <string>

namespace pelorino {

/// The one source of what must not repeat. Any thread.
class Random {
 public:
  virtual ~Random() = default;

  /// A new random UUID: 36 characters, upper-case hexadecimal, with hyphens.
  [[nodiscard]] virtual std::string uuid() = 0;
};

}  // namespace pelorino
