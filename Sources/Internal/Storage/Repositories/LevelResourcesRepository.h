#pragma once

#include <memory>

#include "CachedRepository.h"
#include "Resources.h"

namespace pelorino {

/// Sums of resources within the current level of each user.
class LevelResourcesRepository final : public UserRowsRepository<LevelResource> {
 public:
  explicit LevelResourcesRepository(std::shared_ptr<DatabaseProtocol> with);
};

}  // namespace pelorino
