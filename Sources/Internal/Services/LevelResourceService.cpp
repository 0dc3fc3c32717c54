#include "LevelResourceService.h"

#include <array>
#include <utility>

#include "RowIds.h"

namespace pelorino {

LevelResourceService::LevelResourceService(
    std::shared_ptr<LevelResourcesRepository> levelResourcesRepository)
    : levelResourcesRepository_(std::move(levelResourcesRepository)) {}

void LevelResourceService::removeResources(std::int64_t userId) {
  levelResourcesRepository_->deleteForDataForUsers(std::array{userId});
}

void LevelResourceService::removeAllResources() {
  levelResourcesRepository_->clear();
}

void LevelResourceService::removeInactiveUserData(const std::vector<std::shared_ptr<User>>& users) {
  levelResourcesRepository_->deleteForDataForUsers(rowIds(users));
}

}  // namespace pelorino
