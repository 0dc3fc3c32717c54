#include "CurrencyAccrualService.h"

#include <utility>

#include "RowIds.h"

namespace pelorino {

CurrencyAccrualService::CurrencyAccrualService(
    std::shared_ptr<CurrencyAccrualResourcesRepository> accrualResourcesRepository)
    : accrualResourcesRepository_(std::move(accrualResourcesRepository)) {}

void CurrencyAccrualService::removeAllResources() {
  accrualResourcesRepository_->clear();
}

void CurrencyAccrualService::removeInactiveUserData(
    const std::vector<std::shared_ptr<User>>& users) {
  accrualResourcesRepository_->deleteForDataForUsers(rowIds(users));
}

}  // namespace pelorino
