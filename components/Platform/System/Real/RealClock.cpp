#include "RealClock.h"

#include <chrono>

namespace pelorino {

std::int64_t RealClock::milliseconds() const {
  const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::round<std::chrono::milliseconds>(sinceEpoch).count();
}

}  // namespace pelorino
