#include "CurrencyAccrualService.h"

#include <utility>

namespace pelorino {

CurrencyAccrualService::CurrencyAccrualService(
    std::shared_ptr<CurrencyAccrualResourcesRepository> accrualResourcesRepository)
    : accrualResourcesRepository_(std::move(accrualResourcesRepository)) {}

void CurrencyAccrualService::removeAllResources() {
  accrualResourcesRepository_->clear();
}

}  // namespace pelorino
