#pragma once

#include <memory>
#include <vector>

#include "CurrencyAccrualResourcesRepository.h"
#include "User.h"

namespace pelorino {

/// The currency that users have earned and bought since it was last reported.
///
/// Threads: the incomeQueue only.
class CurrencyAccrualService final {
 public:
  explicit CurrencyAccrualService(
      std::shared_ptr<CurrencyAccrualResourcesRepository> accrualResourcesRepository);

  void removeAllResources();
  void removeInactiveUserData(const std::vector<std::shared_ptr<User>>& users);

 private:
  std::shared_ptr<CurrencyAccrualResourcesRepository> accrualResourcesRepository_;
};

}  // namespace pelorino
