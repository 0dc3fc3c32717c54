#pragma once

#include <functional>
#include <memory>

#include "AnalyticsLogic.h"
#include "Clock.h"
#include "CoreFactory.h"
#include "Executor.h"
#include "PeopleService.h"
#include "Product.h"
#include "StateManager.h"
#include "SubscriptionService.h"

namespace pelorino {

/// Makes the services on top of the repositories, each on its first use and once.
///
/// Threads: the incomeQueue only.
class ServiceFactory final {
 public:
  ServiceFactory(std::shared_ptr<CoreFactory> coreFactory,
                 std::shared_ptr<StateManager> stateManager, const Clock& clock,
                 Executor& executor);

  const std::shared_ptr<ProjectService>& projectService();
  const std::shared_ptr<TimerService>& timerService();
  const std::shared_ptr<ConfigService>& configService();
  const std::shared_ptr<UserService>& userService();
  const std::shared_ptr<LevelResourceService>& levelResourceService();
  const std::shared_ptr<ActivityService>& activityService();
  const std::shared_ptr<EventsService>& eventsService();
  const std::shared_ptr<ReportService>& reportService();
  const std::shared_ptr<CurrencyAccrualService>& currencyAccrualService();
  const std::shared_ptr<PeopleService>& peopleService();
  const std::shared_ptr<SubscriptionService>& subscriptionService();

  /// What the analytics module works with.
  [[nodiscard]] AnalyticsServices analyticsServices();

 private:
  std::shared_ptr<CoreFactory> coreFactory_;
  std::shared_ptr<StateManager> stateManager_;
  std::reference_wrapper<const Clock> clock_;
  std::reference_wrapper<Executor> executor_;
  Product<ProjectService> projectService_;
  Product<TimerService> timerService_;
  Product<ConfigService> configService_;
  Product<UserService> userService_;
  Product<LevelResourceService> levelResourceService_;
  Product<ActivityService> activityService_;
  Product<EventsService> eventsService_;
  Product<ReportService> reportService_;
  Product<CurrencyAccrualService> currencyAccrualService_;
  Product<PeopleService> peopleService_;
  Product<SubscriptionService> subscriptionService_;
};

}  // namespace pelorino
