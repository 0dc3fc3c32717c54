#pragma once

#include "AccrualLogic.h"
#include "CurrencyAccrualService.h"
#include "LevelResourceService.h"
#include "ProgressCalls.h"
#include "UserEvents.h"
#include "UserService.h"

namespace pelorino {

/// The user's progress: levels, balances, the tutorial and progressions.
///
/// Threads: the incomeQueue only.
class ProgressLogic final {
 public:
  ProgressLogic(StateManager& stateManager, UserService& userService,
                CurrencyAccrualService& currencyAccrualService,
                LevelResourceService& levelResourceService, AccrualLogic& accruals,
                UserEvents& events)
      : stateManager_(stateManager),
        userService_(userService),
        currencyAccrualService_(currencyAccrualService),
        levelResourceService_(levelResourceService),
        accruals_(accruals),
        events_(events) {}

  /// Reports the sums of the old level if the new level is the next one.
  void perform(LevelUpCall call);
  /// Reported once, until another user becomes active or the library starts again.
  void perform(CurrentBalanceCall call);
  /// Each step is reported once for each user.
  void perform(TutorialCall call);
  void perform(StartProgressionEventCall call);
  void perform(FinishProgressionEventCall call);

 private:
  StateManager& stateManager_;
  UserService& userService_;
  CurrencyAccrualService& currencyAccrualService_;
  LevelResourceService& levelResourceService_;
  AccrualLogic& accruals_;
  UserEvents& events_;
};

}  // namespace pelorino
