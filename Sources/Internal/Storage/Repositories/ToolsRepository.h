#pragma once

#include <span>

#include "CachedRepository.h"
#include "SQLiteContracts.h"
#include "SdkTools.h"

namespace pelorino {

struct ToolsColumns {
  static constexpr auto tableName = SQLiteContracts::SdkToolsEntry::tableName;
  static std::span<const Column<SdkTools>> columns();
};

extern template class CachedRepository<SdkTools, ToolsColumns>;

/// What the library notes about itself, one row.
class ToolsRepository final : public CachedRepository<SdkTools, ToolsColumns> {
 public:
  using CachedRepository::CachedRepository;
};

}  // namespace pelorino
