#pragma once

#include <memory>
#include <span>

#include "CachedRepository.h"
#include "Report.h"
#include "SQLiteContracts.h"

namespace pelorino {

struct ReportsColumns {
  static constexpr auto tableName = SQLiteContracts::ReportEntry::tableName;
  static constexpr auto owner = &Report::userId;
  static std::span<const Column<Report>> columns();
  /// Without the fresh uuid that a new report gets.
  static std::shared_ptr<Report> blank();
};

extern template class CachedRepository<Report, ReportsColumns>;

/// Packed reports that wait for delivery.
class ReportsRepository final : public UserRowsRepository<Report, ReportsColumns> {
 public:
  using UserRowsRepository::UserRowsRepository;
};

}  // namespace pelorino
