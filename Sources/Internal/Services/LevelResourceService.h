#pragma once

#include <cstdint>
#include <memory>

#include "LevelResourcesRepository.h"

namespace pelorino {

/// The sums that users collect within a level.
///
/// Threads: the incomeQueue only.
class LevelResourceService final {
 public:
  explicit LevelResourceService(std::shared_ptr<LevelResourcesRepository> levelResourcesRepository);

  void removeResources(std::int64_t userId);
  void removeAllResources();

 private:
  std::shared_ptr<LevelResourcesRepository> levelResourcesRepository_;
};

}  // namespace pelorino
