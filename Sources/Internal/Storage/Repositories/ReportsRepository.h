#pragma once

#include <span>

#include "CachedRepository.h"
#include "Report.h"
#include "SQLiteContracts.h"

namespace pelorino {

struct ReportsColumns {
  static constexpr auto tableName = SQLiteContracts::ReportEntry::tableName;
  static constexpr auto owner = &Report::userId;
  static std::span<const Column<Report>> columns();
};

extern template class CachedRepository<Report, ReportsColumns>;

/// Packed reports that wait for delivery.
class ReportsRepository final : public UserRowsRepository<Report, ReportsColumns> {
 public:
  using UserRowsRepository::UserRowsRepository;
};

}  // namespace pelorino
