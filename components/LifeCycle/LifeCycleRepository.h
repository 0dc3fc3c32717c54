#pragma once

#include <memory>
#include <utility>

#include "ApplicationLifeCycle.h"
#include "LifeCycleRepositoryProtocol.h"

namespace pelorino {

/// Owns the one ApplicationLifeCycle.
class LifeCycleRepository final : public LifeCycleRepositoryProtocol {
 public:
  explicit LifeCycleRepository(std::unique_ptr<ApplicationLifeCycle> lifecycle)
      : lifecycle_(std::move(lifecycle)) {}

  void setLifeCycleListener(std::weak_ptr<LifeCycleProtocol> listener) override {
    lifecycle_->setLifeCycleListener(std::move(listener));
  }

 private:
  std::unique_ptr<ApplicationLifeCycle> lifecycle_;
};

}  // namespace pelorino
