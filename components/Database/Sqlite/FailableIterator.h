#pragma once

#include <exception>
#include <optional>

namespace pelorino {

/// A sequence whose next step can fail.
template <class Element>
class FailableIterator {
 public:
  virtual ~FailableIterator() = default;

  /// The next element, absent at the end. Throws what the step threw.
  [[nodiscard]] virtual std::optional<Element> failableNext() = 0;

  /// The same, with a failure as the end.
  [[nodiscard]] std::optional<Element> next() noexcept {
    try {
      return failableNext();
    } catch (const std::exception&) {
      return std::nullopt;
    }
  }
};

}  // namespace pelorino
