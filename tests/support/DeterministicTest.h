#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

#include "DeterministicSystem.h"

namespace pelorino {

/// A test on the deterministic system, which is reset before each. The seed is 1 or that of the
/// environment variable PELORINO_SEED; a failing test prints it. At the end no block may be
/// waiting; a test that means to leave one calls system.abandon().
class DeterministicTest : public ::testing::Test {
 protected:
  DeterministicTest() { system.reset(seed); }

  void TearDown() override {
    for (const std::string& wait : system.abandon()) ADD_FAILURE() << "still waiting: " << wait;
  }

  [[nodiscard]] static std::uint64_t seedFromEnvironment() {
    const char* text = std::getenv("PELORINO_SEED");
    return text == nullptr ? 1 : std::strtoull(text, nullptr, 10);
  }

  const std::uint64_t seed = seedFromEnvironment();
  DeterministicSystem& system = DeterministicSystem::instance();

 private:
  ::testing::ScopedTrace seedTrace_{__FILE__, __LINE__, "PELORINO_SEED=" + std::to_string(seed)};
};

}  // namespace pelorino
