#pragma once

#include "LevelResourceService.h"
#include "PaymentCalls.h"
#include "ProjectService.h"
#include "UserEvents.h"

namespace pelorino {

/// Purchases with real money and with the application's own currencies.
///
/// Threads: the incomeQueue only.
class PaymentLogic final {
 public:
  PaymentLogic(ProjectService& projectService, LevelResourceService& levelResourceService,
               UserEvents& events)
      : projectService_(projectService),
        levelResourceService_(levelResourceService),
        events_(events) {}

  /// Each order is reported once.
  void perform(RealCurrencyPaymentCall call);
  void perform(VirtualCurrencyPaymentCall call);

 private:
  ProjectService& projectService_;
  LevelResourceService& levelResourceService_;
  UserEvents& events_;
};

}  // namespace pelorino
