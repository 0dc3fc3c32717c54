#pragma once

#include <memory>

#include "CurrencyAccrualResourcesRepository.h"

namespace pelorino {

/// The currency that users have earned and bought since it was last reported.
///
/// Threads: the incomeQueue only.
class CurrencyAccrualService final {
 public:
  explicit CurrencyAccrualService(
      std::shared_ptr<CurrencyAccrualResourcesRepository> accrualResourcesRepository);

  void removeAllResources();

 private:
  std::shared_ptr<CurrencyAccrualResourcesRepository> accrualResourcesRepository_;
};

}  // namespace pelorino
