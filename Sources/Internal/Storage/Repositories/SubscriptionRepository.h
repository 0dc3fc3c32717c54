#pragma once

#include <memory>

#include "CachedRepository.h"
#include "Subscriptions.h"

namespace pelorino {

/// What is known of subscriptions, one row for each project.
class SubscriptionRepository final : public ProjectRowsRepository<SubscriptionInfo> {
 public:
  explicit SubscriptionRepository(std::shared_ptr<DatabaseProtocol> with);
};

}  // namespace pelorino
