#pragma once

#include <cstdint>
#include <initializer_list>
#include <random>
#include <vector>

namespace pelorino {

/// Choices that a seed makes. The same on every standard library.
class Dice final {
 public:
  explicit Dice(std::uint64_t seed) : generator_(seed * 0x9E3779B97F4A7C15ULL + 1) {}

  /// 0 to `count` - 1.
  [[nodiscard]] std::int64_t below(std::int64_t count) {
    return static_cast<std::int64_t>(generator_() % static_cast<std::uint64_t>(count));
  }
  [[nodiscard]] bool chance(std::int64_t percent) { return below(100) < percent; }

  template <class Value>
  [[nodiscard]] Value pick(std::initializer_list<Value> values) {
    return values.begin()[below(static_cast<std::int64_t>(values.size()))];
  }

 private:
  std::mt19937_64 generator_;
};

}  // namespace pelorino
