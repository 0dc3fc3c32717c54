#pragma once

#include <memory>

#include "CachedRepository.h"
#include "Marks.h"

namespace pelorino {

/// Orders that have been reported.
class RealPaymentRepository final : public ProjectRowsRepository<RealPaymentMark> {
 public:
  explicit RealPaymentRepository(std::shared_ptr<DatabaseProtocol> with);
};

}  // namespace pelorino
