#pragma once

#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "Repositories.h"
#include "Resources.h"
#include "StateManager.h"
#include "User.h"

namespace pelorino {

/// The amounts that users spent, earned and bought within their level: one sum for each user, name
/// and type. Each change is stored at once.
///
/// Threads: the incomeQueue only.
class LevelResourceService final {
 public:
  LevelResourceService(StateManager& stateManager,
                       LevelResourcesRepository& levelResourcesRepository);

  /// Adds an amount to the sums of the active user. The resource's own user is replaced. Does
  /// nothing while tracking or the user's aggregation is off, or when the disk refuses the user's
  /// row.
  void addLevelResource(LevelResource resource);

  /// The active user's sums of this type; absent when there are none.
  [[nodiscard]] std::optional<Resources> getSpentResources() const;
  [[nodiscard]] std::optional<Resources> getEarnedResources() const;
  [[nodiscard]] std::optional<Resources> getBoughtResources() const;

  void removeResourcesForActiveUser();
  void removeAllResources();
  void removeInactiveUserData(std::span<const RowId> userIds);

 private:
  [[nodiscard]] std::optional<Resources> getResources(LevelResourceType type) const;

  StateManager& stateManager_;
  LevelResourcesRepository& levelResourcesRepository_;
};

}  // namespace pelorino
