#pragma once

#include <cstdint>
#include <functional>
#include <optional>

namespace pelorino {

/// What the observer needs of the logic. On the incomeQueue.
class LogicBroadcasterProtocol {
 public:
  using IdentifiersUpdate = std::function<void(std::optional<std::int64_t>)>;

  virtual ~LogicBroadcasterProtocol() = default;

  /// Who hears of the backend's identifier of the active user.
  virtual void setOnBackendIdentifiersUpdate(IdentifiersUpdate onBackendIdentifiersUpdate) = 0;

  /// Tells the identifier that is stored, present or not.
  virtual void forceUpdate() = 0;
};

}  // namespace pelorino
