#pragma once

#include <memory>

#include "CachedRepository.h"
#include "Project.h"

namespace pelorino {

/// The projects, one for each application key.
class ProjectRepository final : public CachedRepository<Project> {
 public:
  explicit ProjectRepository(std::shared_ptr<DatabaseProtocol> with);
};

}  // namespace pelorino
