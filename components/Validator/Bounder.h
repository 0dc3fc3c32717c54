#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "Label.h"

namespace pelorino {

/// Cuts arguments of public operations to their limits. Any thread.
class Bounder final {
 public:
  Bounder() = delete;

  /// The first `maximalLength` characters, as a user counts them. A cut is logged at `warning`.
  [[nodiscard]] static std::string maxStringLength(std::string_view method, const Label& argument,
                                                   std::string value, std::size_t maximalLength);
};

}  // namespace pelorino
