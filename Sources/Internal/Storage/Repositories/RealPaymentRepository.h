#pragma once

#include <span>

#include "CachedRepository.h"
#include "RealPaymentMark.h"
#include "SQLiteContracts.h"

namespace pelorino {

struct RealPaymentColumns {
  static constexpr auto tableName = SQLiteContracts::RealPaymentMarkEntry::tableName;
  static constexpr auto owner = &RealPaymentMark::projectId;
  static std::span<const Column<RealPaymentMark>> columns();
};

extern template class CachedRepository<RealPaymentMark, RealPaymentColumns>;

/// Orders that have been reported.
class RealPaymentRepository final
    : public ProjectRowsRepository<RealPaymentMark, RealPaymentColumns> {
 public:
  using ProjectRowsRepository::ProjectRowsRepository;
};

}  // namespace pelorino
