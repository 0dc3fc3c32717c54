#pragma once

#include <string>

namespace pelorino {

/// The only source of randomness. Any thread.
class Random {
 public:
  virtual ~Random() = default;

  /// A new random UUID: 36 characters, upper-case hexadecimal, with hyphens.
  [[nodiscard]] virtual std::string uuid() = 0;
};

}  // namespace pelorino
