#pragma once

#include <optional>

namespace pelorino {

/// Reads the user's answer on tracking.
class TrackingHelper final {
 public:
  TrackingHelper() = delete;

  /// True for an authorised status and for one that is not determined yet. `status` is absent where
  /// the host does not ask its user, which counts as refused and is said at `warning`.
  [[nodiscard]] static bool trackingStatus(std::optional<int> status);
};

}  // namespace pelorino
