#pragma once

#include <string>
#include <string_view>

#include "Text.h"

namespace pelorino {

/// The library's own copy of a text of the host, with what is no UTF-8 repaired.
[[nodiscard]] inline std::string copied(std::string_view text) {
  return repairUtf8(std::string(text));
}

}  // namespace pelorino
