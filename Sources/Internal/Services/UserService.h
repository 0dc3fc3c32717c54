#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "Repositories.h"
#include "StateManager.h"
#include "User.h"

namespace pelorino {

/// Reads and changes the state of the active user. Part of it is stored, part is in memory only.
///
/// Threads: the incomeQueue only.
class UserService final {
 public:
  UserService(StateManager& stateManager, UserRepository& userRepository,
              TutorialRepository& tutorialRepository);

  /// Stores the active user's level.
  void setUserLevel(std::int64_t level);
  /// The same, with a log line.
  void setLevel(std::int64_t level);

  /// Deletes the rows of these users, but not the rows of other tables that belong to them.
  void removeUsers(const std::vector<std::shared_ptr<User>>& users);

  /// Sets whether LevelResourceService collects sums for the active user.
  void resourceAggregation(bool isActive);

  /// Replaces the running progression. In memory only.
  void activateLocation(Location location);
  [[nodiscard]] const std::optional<Location>& getLocation() const { return location_; }
  /// `writeLog`: whether to log that a running progression was cancelled.
  void clearLocation(bool writeLog);

  /// Tutorial steps that the active user has reported. The marks are stored.
  [[nodiscard]] bool isTutorialStepMarked(std::int64_t step) const;
  void markTutorialStep(std::int64_t step);

  /// Whether the active user has reported a balance. In memory only.
  void changeCurBalanceSentMark(bool isSent);
  [[nodiscard]] bool isBalanceSentForActiveUser() const;

 private:
  StateManager& stateManager_;
  UserRepository& userRepository_;
  TutorialRepository& tutorialRepository_;
  std::optional<Location> location_;
};

}  // namespace pelorino
