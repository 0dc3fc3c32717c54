#include "ServiceFactory.h"

#include "Host.h"
#include "ResolvedHost.h"

namespace pelorino {

ServiceFactory::ServiceFactory(Run& run, CoreFactory& core, StateManager& state, const Clock& clock,
                               Executor& executor, Random& random)
    : projectService(state, core.get<ProjectRepository>(), core.get<RealPaymentRepository>()),
      userService(state, core.get<UserRepository>(), core.get<TutorialRepository>()),
      eventsService(state, core.get<EventRepository>()),
      timerService(run, state, executor),
      configService(run, state, core.backend(), executor),
      reportService(run, state, core.get<EventRepository>(), core.get<ReportsRepository>(),
                    core.backend(), random),
      activityService(state, core.get<UserRepository>(), clock),
      currencyAccrualService(state, core.get<CurrencyAccrualResourcesRepository>(), clock),
      levelResourceService(state, core.get<LevelResourcesRepository>()),
      peopleService(state, core.get<PeopleRepository>()),
      subscriptionService(run, state, core.get<SubscriptionRepository>(), &Host::store,
                          Host::facts(), executor),
      anticheatService(run, state, core.backend()),
      messagingService(run, state, core.backend(), core.get<ProjectRepository>(),
                       core.get<MessagingCategoryRepository>()) {}

}  // namespace pelorino
