#pragma once

#include "Random.h"

namespace pelorino {

/// Randomness of the operating system: nothing is kept between two calls, so that a forked process
/// repeats nothing.
class RealRandom final : public Random {
 public:
  [[nodiscard]] std::string uuid() override;
};

}  // namespace pelorino
