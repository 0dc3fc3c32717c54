#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "FakeFacts.h"
#include "ResolvedHost.h"

namespace pelorino {

/// A host of which a test tells as much as it likes, on a machine that it describes.
class HostTest : public ::testing::Test {
 protected:
  class FixedClock final : public Clock {
   public:
    [[nodiscard]] std::int64_t milliseconds() const override { return 0; }
  };

  FakeFacts system;
  FixedClock clock;
  HostDescription description;
  ResolvedHost host{[this] { return std::make_shared<const HostDescription>(description); }, system,
                    clock};
};

}  // namespace pelorino
