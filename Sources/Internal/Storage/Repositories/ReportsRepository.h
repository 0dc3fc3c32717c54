#pragma once

#include <memory>

#include "CachedRepository.h"
#include "Report.h"

namespace pelorino {

/// Packed reports that wait for delivery. Many can gather while the backend is out of reach: those
/// of earlier launches are listed without their packages, which are read when their turn comes.
class ReportsRepository final : public UserRowsRepository<Report> {
 public:
  explicit ReportsRepository(std::shared_ptr<DatabaseProtocol> with);

  /// Reads the packages from the row, unless the report has them. False when there is no such row,
  /// or it cannot be read.
  bool readPackages(Report& report);

  /// A report never changes, and one listed without its packages would lose them.
  void update(const Item& item) = delete;
};

}  // namespace pelorino
