#pragma once

#include <cstdint>

#include "CurrencyAccrualService.h"
#include "EventsService.h"
#include "LevelResourceService.h"
#include "PaymentCalls.h"
#include "StateManager.h"
#include "UserEvents.h"

namespace pelorino {

/// Currency that users get. That happens far too often for one event each time, so amounts are
/// added up, and the sums become events from time to time.
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

  /// Turns the active user's sums into an event and removes them. Does nothing without a session or
  /// without sums.
  void addCurrencyAccrual();
  /// The same for all users of the project. For sums that an earlier run has left.
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
