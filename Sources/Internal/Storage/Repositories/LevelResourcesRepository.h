#pragma once

#include <span>

#include "CachedRepository.h"
#include "LevelResource.h"
#include "SQLiteContracts.h"

namespace pelorino {

struct LevelResourcesColumns {
  static constexpr auto tableName = SQLiteContracts::LevelResourceEntry::tableName;
  static constexpr auto owner = &LevelResource::userId;
  static std::span<const Column<LevelResource>> columns();
};

extern template class CachedRepository<LevelResource, LevelResourcesColumns>;

/// Sums of resources within the current level of each user.
class LevelResourcesRepository final
    : public UserRowsRepository<LevelResource, LevelResourcesColumns> {
 public:
  using UserRowsRepository::UserRowsRepository;
};

}  // namespace pelorino
