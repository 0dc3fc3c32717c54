#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "Repositories.h"
#include "StateManager.h"
#include "User.h"

namespace pelorino {

/// Changes the state of the active user: what is stored, and what lasts as long as the process.
///
/// Threads: the incomeQueue only.
class UserService final {
 public:
  UserService(StateManager& stateManager, UserRepository& userRepository,
              TutorialRepository& tutorialRepository);

  void setUserLevel(std::int64_t level);
  /// The same, told in the log.
  void setLevel(std::int64_t level);

  /// Deletes the rows of these users, without what belongs to them.
  void removeUsers(const std::vector<std::shared_ptr<User>>& users);

  /// Whether sums of the level are kept for this user.
  void resourceAggregation(bool isActive);

  /// The started progression takes the place of the one before. In memory only.
  void activateLocation(Location location);
  [[nodiscard]] const std::optional<Location>& getLocation() const { return location_; }
  /// `writeLog`: whether a progression that was started is told as cancelled.
  void clearLocation(bool writeLog);

  /// Steps that the active user has reported, stored.
  [[nodiscard]] bool isTutorialStepMarked(std::int64_t step) const;
  void markTutorialStep(std::int64_t step);

  /// Whether the active user has reported a balance in this process.
  void changeCurBalanceSentMark(bool isSent);
  [[nodiscard]] bool isBalanceSentForActiveUser() const;

 private:
  StateManager& stateManager_;
  UserRepository& userRepository_;
  TutorialRepository& tutorialRepository_;
  std::optional<Location> location_;
};

}  // namespace pelorino
