#pragma once

#include "Clock.h"

namespace pelorino {

class RealClock final : public Clock {
 public:
  [[nodiscard]] std::int64_t milliseconds() const override;
};

}  // namespace pelorino
