#pragma once

#include "ActivityService.h"
#include "AntiCheatService.h"
#include "Clock.h"
#include "ConfigService.h"
#include "CoreFactory.h"
#include "CurrencyAccrualService.h"
#include "EventsService.h"
#include "Executor.h"
#include "LevelResourceService.h"
#include "MessagingService.h"
#include "PeopleService.h"
#include "ProjectService.h"
#include "Random.h"
#include "ReportService.h"
#include "Run.h"
#include "StateManager.h"
#include "SubscriptionService.h"
#include "TimerService.h"
#include "UserService.h"

namespace pelorino {

/// Owns the services of a run. All arguments are borrowed and must outlive it.
///
/// Threads: the incomeQueue only.
class ServiceFactory final {
 public:
  ServiceFactory(Run& run, CoreFactory& core, StateManager& state, const Clock& clock,
                 Executor& executor, Random& random);

  ProjectService projectService;
  UserService userService;
  EventsService eventsService;
  TimerService timerService;
  ConfigService configService;
  ReportService reportService;
  ActivityService activityService;
  CurrencyAccrualService currencyAccrualService;
  LevelResourceService levelResourceService;
  PeopleService peopleService;
  SubscriptionService subscriptionService;
  AntiCheatService anticheatService;
  MessagingService messagingService;
};

}  // namespace pelorino
