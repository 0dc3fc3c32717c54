#pragma once

#include <memory>

namespace pelorino {

class LifeCycleProtocol;

/// Where a listener to the application's life cycle is set.
class LifeCycleRepositoryProtocol {
 public:
  virtual ~LifeCycleRepositoryProtocol() = default;

  /// Replaces the listener; an empty one ends listening. It is held weakly. Any thread.
  virtual void setLifeCycleListener(std::weak_ptr<LifeCycleProtocol> listener) = 0;
};

}  // namespace pelorino
