#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace pelorino::bench {

/// Measured values, at least one before any question.
class Samples final {
 public:
  void reserve(std::size_t count) { values_.reserve(count); }
  void add(double value) { values_.push_back(value); }
  [[nodiscard]] double latest() const { return values_.back(); }

  /// The value below which `share` of all lie.
  [[nodiscard]] double quantile(double share) const {
    std::vector<double> sorted = values_;
    const auto place = static_cast<std::ptrdiff_t>(share * static_cast<double>(sorted.size() - 1));
    std::ranges::nth_element(sorted, sorted.begin() + place);
    return sorted[static_cast<std::size_t>(place)];
  }
  [[nodiscard]] double median() const { return quantile(0.5); }
  [[nodiscard]] double least() const { return std::ranges::min(values_); }
  [[nodiscard]] double greatest() const { return std::ranges::max(values_); }

 private:
  std::vector<double> values_;
};

}  // namespace pelorino::bench
