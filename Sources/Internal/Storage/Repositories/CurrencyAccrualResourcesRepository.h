#pragma once

#include <memory>

#include "CachedRepository.h"
#include "Resources.h"

namespace pelorino {

/// Sums of currency that wait to be reported.
class CurrencyAccrualResourcesRepository final
    : public UserRowsRepository<CurrencyAccrualResource> {
 public:
  explicit CurrencyAccrualResourcesRepository(std::shared_ptr<DatabaseProtocol> with);
};

}  // namespace pelorino
