#pragma once

#include <cstdint>

#include "CurrencyAccrualService.h"
#include "EventsService.h"
#include "LevelResourceService.h"
#include "PaymentCalls.h"
#include "StateManager.h"
#include "UserEvents.h"

namespace pelorino {

/// Currency that comes in: far too often for an event each, so that sums of it leave from time to
/// time.
///
/// Threads: the incomeQueue only.
class AccrualLogic final {
 public:
  AccrualLogic(StateManager& stateManager, EventsService& eventsService,
               CurrencyAccrualService& currencyAccrualService,
               LevelResourceService& levelResourceService, UserEvents& events)
      : stateManager_(stateManager),
        eventsService_(eventsService),
        currencyAccrualService_(currencyAccrualService),
        levelResourceService_(levelResourceService),
        events_(events) {}

  void perform(CurrencyAccrualCall call);

  /// Stores an event of the active user's sums since the last one, if there are any, and forgets
  /// them.
  void addCurrencyAccrual();
  /// The same for the sums that an earlier run has left behind, for every user of the project.
  void addSavedCurrencyAccrualResources();

 private:
  void addSums(const User& user, std::int64_t timestamp);

  StateManager& stateManager_;
  EventsService& eventsService_;
  CurrencyAccrualService& currencyAccrualService_;
  LevelResourceService& levelResourceService_;
  UserEvents& events_;
};

}  // namespace pelorino
