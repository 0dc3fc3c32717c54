#pragma once

#include <span>

#include "CachedRepository.h"
#include "SQLiteContracts.h"
#include "SubscriptionInfo.h"

namespace pelorino {

struct SubscriptionColumns {
  static constexpr auto tableName = SQLiteContracts::SubscriptionEntry::tableName;
  static constexpr auto owner = &SubscriptionInfo::projectId;
  static std::span<const Column<SubscriptionInfo>> columns();
};

extern template class CachedRepository<SubscriptionInfo, SubscriptionColumns>;

/// What is known of subscriptions, one row for each project.
class SubscriptionRepository final
    : public ProjectRowsRepository<SubscriptionInfo, SubscriptionColumns> {
 public:
  using ProjectRowsRepository::ProjectRowsRepository;
};

}  // namespace pelorino
