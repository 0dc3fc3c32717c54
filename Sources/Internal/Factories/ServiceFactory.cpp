#include "ServiceFactory.h"

#include <utility>

#include "Host.h"
#include "ResolvedHost.h"

namespace pelorino {

ServiceFactory::ServiceFactory(std::shared_ptr<CoreFactory> coreFactory,
                               std::shared_ptr<StateManager> stateManager, const Clock& clock,
                               Executor& executor)
    : coreFactory_(std::move(coreFactory)),
      stateManager_(std::move(stateManager)),
      clock_(clock),
      executor_(executor) {}

const std::shared_ptr<ProjectService>& ServiceFactory::projectService() {
  return projectService_.get(stateManager_, coreFactory_->projectRepository(),
                             coreFactory_->realPaymentRepository());
}

const std::shared_ptr<TimerService>& ServiceFactory::timerService() {
  return timerService_.get(stateManager_, executor_);
}

const std::shared_ptr<ConfigService>& ServiceFactory::configService() {
  return configService_.get(stateManager_, coreFactory_->backend(), executor_);
}

const std::shared_ptr<UserService>& ServiceFactory::userService() {
  return userService_.get(stateManager_, coreFactory_->userRepository(),
                          coreFactory_->tutorialRepository());
}

const std::shared_ptr<LevelResourceService>& ServiceFactory::levelResourceService() {
  return levelResourceService_.get(stateManager_, coreFactory_->levelResourcesRepository());
}

const std::shared_ptr<ActivityService>& ServiceFactory::activityService() {
  return activityService_.get(stateManager_, coreFactory_->userRepository(), clock_);
}

const std::shared_ptr<EventsService>& ServiceFactory::eventsService() {
  return eventsService_.get(stateManager_, coreFactory_->eventRepository());
}

const std::shared_ptr<ReportService>& ServiceFactory::reportService() {
  return reportService_.get(stateManager_, coreFactory_->eventRepository(),
                            coreFactory_->reportsRepository(), coreFactory_->backend());
}

const std::shared_ptr<CurrencyAccrualService>& ServiceFactory::currencyAccrualService() {
  return currencyAccrualService_.get(stateManager_,
                                     coreFactory_->currencyAccrualResourcesRepository(), clock_);
}

const std::shared_ptr<PeopleService>& ServiceFactory::peopleService() {
  return peopleService_.get(stateManager_, coreFactory_->peopleRepository());
}

const std::shared_ptr<SubscriptionService>& ServiceFactory::subscriptionService() {
  return subscriptionService_.get(stateManager_, coreFactory_->subscriptionRepository(),
                                  &Host::store, std::ref(Host::facts()), executor_);
}

AnalyticsServices ServiceFactory::analyticsServices() {
  return {.stateManager = stateManager_,
          .projectService = projectService(),
          .userService = userService(),
          .eventsService = eventsService(),
          .timerService = timerService(),
          .configService = configService(),
          .reportService = reportService(),
          .activityService = activityService(),
          .currencyAccrualService = currencyAccrualService(),
          .levelResourceService = levelResourceService(),
          .peopleService = peopleService(),
          .subscriptionService = subscriptionService()};
}

}  // namespace pelorino
