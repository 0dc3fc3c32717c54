#pragma once

#include <stdexcept>
#include <string>

namespace pelorino {

/// The library's only exception type: a text. It never reaches the host.
class PLRError final : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;

  [[nodiscard]] std::string description() const { return what(); }
};

}  // namespace pelorino
