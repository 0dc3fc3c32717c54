#include "LevelResourceService.h"

#include <array>
#include <string>
#include <string_view>
#include <utility>

#include "ResourceSums.h"

namespace pelorino {
namespace {

struct LevelSums {
  static constexpr std::string_view label = "LU";
  static bool isSame(const LevelResource& a, const LevelResource& b) {
    return a.name == b.name && a.type == b.type;
  }
  static std::string text(const LevelResource& sum) {
    return sumText(sum.userId, description(sum.type), sum.name, sum.amount);
  }
};

}  // namespace

LevelResourceService::LevelResourceService(StateManager& stateManager,
                                           LevelResourcesRepository& levelResourcesRepository)
    : stateManager_(stateManager), levelResourcesRepository_(levelResourcesRepository) {}

void LevelResourceService::addLevelResource(LevelResource resource) {
  const User& user = *stateManager_.getActiveUser();
  if (!stateManager_.getActiveProject()->trackingAvailable || !user.isResourceAggregationEnable) {
    return;
  }
  if (!stateManager_.ensureActiveUserIsStored()) return;
  resource.userId = user.idKey;
  addToSums<LevelSums>(levelResourcesRepository_, std::move(resource));
}

std::optional<Resources> LevelResourceService::getSpentResources() const {
  return getResources(LevelResourceType::spent);
}

std::optional<Resources> LevelResourceService::getEarnedResources() const {
  return getResources(LevelResourceType::earned);
}

std::optional<Resources> LevelResourceService::getBoughtResources() const {
  return getResources(LevelResourceType::bought);
}

std::optional<Resources> LevelResourceService::getResources(LevelResourceType type) const {
  Resources sums;
  for (const auto& row : levelResourcesRepository_.ofUser(stateManager_.getActiveUser()->idKey)) {
    if (row->type == type) sums[row->name] = row->amount;
  }
  if (sums.empty()) return std::nullopt;
  return sums;
}

void LevelResourceService::removeResourcesForActiveUser() {
  levelResourcesRepository_.deleteForDataForUsers(std::array{stateManager_.getActiveUser()->idKey});
}

void LevelResourceService::removeAllResources() {
  levelResourcesRepository_.clear();
}

void LevelResourceService::removeInactiveUserData(std::span<const RowId> userIds) {
  levelResourcesRepository_.deleteForDataForUsers(userIds);
}

}  // namespace pelorino
