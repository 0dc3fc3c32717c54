#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "LevelResourcesRepository.h"
#include "User.h"

namespace pelorino {

/// The sums that users collect within a level.
///
/// Threads: the incomeQueue only.
class LevelResourceService final {
 public:
  explicit LevelResourceService(std::shared_ptr<LevelResourcesRepository> levelResourcesRepository);

  void removeResources(std::int64_t userId);
  void removeAllResources();
  void removeInactiveUserData(const std::vector<std::shared_ptr<User>>& users);

 private:
  std::shared_ptr<LevelResourcesRepository> levelResourcesRepository_;
};

}  // namespace pelorino
