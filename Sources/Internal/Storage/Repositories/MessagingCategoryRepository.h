#pragma once

#include <memory>

#include "CachedRepository.h"
#include "MessagingConfig.h"

namespace pelorino {

/// Categories of push notifications, common to all projects.
class MessagingCategoryRepository final : public CachedRepository<MessagingCategory> {
 public:
  explicit MessagingCategoryRepository(std::shared_ptr<DatabaseProtocol> with);
};

}  // namespace pelorino
