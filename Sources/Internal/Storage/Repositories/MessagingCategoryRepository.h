#pragma once

#include <span>

#include "CachedRepository.h"
#include "MessagingCategory.h"
#include "SQLiteContracts.h"

namespace pelorino {

struct MessagingCategoryColumns {
  static constexpr auto tableName = SQLiteContracts::MessagingCategoryEntry::tableName;
  static std::span<const Column<MessagingCategory>> columns();
};

extern template class CachedRepository<MessagingCategory, MessagingCategoryColumns>;

/// Categories of push notifications, common to all projects.
class MessagingCategoryRepository final
    : public CachedRepository<MessagingCategory, MessagingCategoryColumns> {
 public:
  using CachedRepository::CachedRepository;
};

}  // namespace pelorino
