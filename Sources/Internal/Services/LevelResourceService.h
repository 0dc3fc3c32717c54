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

/// The sums that users collect within a level: one for each name and type, stored at each change.
///
/// Threads: the incomeQueue only.
class LevelResourceService final {
 public:
  LevelResourceService(StateManager& stateManager,
                       LevelResourcesRepository& levelResourcesRepository);

  /// Adds to the sums of the active user, whatever user the resource names. Nothing is added while
  /// tracking or the user's aggregation is off.
  void addLevelResource(LevelResource resource);

  /// The active user's sums of this type by their names; absent when there are none.
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
