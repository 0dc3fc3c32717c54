#pragma once

#include <cstdint>
#include <functional>
#include <optional>

namespace pelorino {

/// What the observer needs of the logic. On the incomeQueue.
class LogicBroadcasterProtocol {
 public:
  virtual ~LogicBroadcasterProtocol() = default;

  /// Told the backend's identifier of the active user, present or not.
  std::function<void(std::optional<std::int64_t>)> onBackendIdentifiersUpdate;

  /// Tells the identifier that is stored.
  virtual void forceUpdate() = 0;
};

}  // namespace pelorino
