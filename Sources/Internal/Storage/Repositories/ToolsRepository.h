#pragma once

#include <memory>

#include "CachedRepository.h"
#include "PeopleCard.h"

namespace pelorino {

/// What the library notes about itself, one row.
class ToolsRepository final : public CachedRepository<SdkTools> {
 public:
  explicit ToolsRepository(std::shared_ptr<DatabaseProtocol> with);
};

}  // namespace pelorino
