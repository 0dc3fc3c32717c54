#pragma once

#include <span>

#include "CachedRepository.h"
#include "CurrencyAccrualResource.h"
#include "SQLiteContracts.h"

namespace pelorino {

struct CurrencyAccrualResourcesColumns {
  static constexpr auto tableName = SQLiteContracts::CurrencyAccrualResourcesEntry::tableName;
  static constexpr auto owner = &CurrencyAccrualResource::userId;
  static std::span<const Column<CurrencyAccrualResource>> columns();
};

extern template class CachedRepository<CurrencyAccrualResource, CurrencyAccrualResourcesColumns>;

/// Sums of currency that wait to be reported.
class CurrencyAccrualResourcesRepository final
    : public UserRowsRepository<CurrencyAccrualResource, CurrencyAccrualResourcesColumns> {
 public:
  using UserRowsRepository::UserRowsRepository;
};

}  // namespace pelorino
