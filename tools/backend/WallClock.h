#pragma once

#include <chrono>
#include <cstdint>

namespace pelorino::backend {

/// Milliseconds since 1970.
[[nodiscard]] inline std::int64_t millisecondsNow() {
  using namespace std::chrono;
  return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}

}  // namespace pelorino::backend
