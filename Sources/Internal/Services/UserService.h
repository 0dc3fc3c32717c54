#pragma once

#include <cstdint>
#include <memory>

#include "StateManager.h"
#include "UserRepository.h"

namespace pelorino {

/// Changes the stored state of the active user.
///
/// Threads: the incomeQueue only.
class UserService final {
 public:
  UserService(std::shared_ptr<StateManager> stateManager,
              std::shared_ptr<UserRepository> userRepository);

  /// Stores the level and tells it in the log.
  void setLevel(std::int64_t level);

  /// Whether sums of the level are kept for this user.
  void resourceAggregation(bool isActive);

 private:
  std::shared_ptr<StateManager> stateManager_;
  std::shared_ptr<UserRepository> userRepository_;
};

}  // namespace pelorino
