#pragma once

#include <cstdint>
#include <functional>
#include <optional>

namespace pelorino {

/// What AnalyticsObserver needs of the logic.
///
/// Threads: the incomeQueue only.
class LogicBroadcasterProtocol {
 public:
  virtual ~LogicBroadcasterProtocol() = default;

  /// Called with the backend's identifier of the active user, which may be absent.
  std::function<void(std::optional<std::int64_t>)> onBackendIdentifiersUpdate;

  /// Calls onBackendIdentifiersUpdate with the stored identifier.
  virtual void forceUpdate() = 0;
};

}  // namespace pelorino
