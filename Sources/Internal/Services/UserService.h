#pragma once

#include <cstdint>
#include <memory>
#include <vector>

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

  /// Deletes the rows of these users, without what belongs to them.
  void removeUsers(const std::vector<std::shared_ptr<User>>& users);

  /// Whether sums of the level are kept for this user.
  void resourceAggregation(bool isActive);

 private:
  std::shared_ptr<StateManager> stateManager_;
  std::shared_ptr<UserRepository> userRepository_;
};

}  // namespace pelorino
