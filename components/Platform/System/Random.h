#pragma once

#include <string>

namespace pelorino {

class Random {
 public:
  virtual ~Random() = default;

  /// A new random UUID: 36 characters, upper-case hexadecimal, with hyphens. Any thread.
  [[nodiscard]] virtual std::string uuid() = 0;
};

}  // namespace pelorino
