#include "LibraryRun.h"

#include <utility>

#include "Host.h"
#include "ResolvedHost.h"
#include "System.h"

namespace pelorino {
namespace {

SDKMigrationManager migrationManager(CoreFactory& core, const std::string& applicationKey) {
  return {{.projects = core.get<ProjectRepository>(),
           .users = core.get<UserRepository>(),
           .cards = core.get<PeopleRepository>(),
           .payments = core.get<RealPaymentRepository>(),
           .tutorials = core.get<TutorialRepository>()},
          System::current().files(),
          Host::facts().supportDirectory(),
          applicationKey};
}

}  // namespace

LibraryRun::LibraryRun(std::unique_ptr<CoreFactory> coreFactory, const std::string& applicationKey,
                       const std::optional<std::string>& userId, std::function<bool()> isEditorMode)
    : coreFactory_(std::move(coreFactory)),
      deviceManager_(coreFactory_->get<IdentifiersRepository>(),
                     coreFactory_->get<ToolsRepository>(), coreFactory_->platform(),
                     System::current().executor()),
      coreManager_(applicationKey, coreFactory_->get<ProjectRepository>(),
                   coreFactory_->get<UserRepository>(), System::current().clock()),
      stateManager_(deviceManager_, coreManager_, migrationManager(*coreFactory_, applicationKey),
                    coreFactory_->get<UserRepository>(), userId, std::move(isEditorMode)),
      serviceFactory_(*this, *coreFactory_, stateManager_, System::current().clock(),
                      System::current().executor(), System::current().random()),
      analyticsLogic_(*this, stateManager_, serviceFactory_, System::current().clock()),
      messagingLogic_(*this, analyticsLogic_, serviceFactory_.eventsService,
                      serviceFactory_.messagingService, System::current().clock()) {}

void LibraryRun::start(const std::optional<PLRAnalyticsConfigurationLocal>& configuration) {
  coreFactory_->lifeCycle().setLifeCycleListener(weak(analyticsLogic_));
  analyticsLogic_.prepareCallBacks();
  analyticsLogic_.applyAnalyticsConfiguration(configuration);
  analyticsLogic_.tryStartSDK();
}

void LibraryRun::stop() {
  coreFactory_->lifeCycle().setLifeCycleListener({});  // First: no notification during the end.
  analyticsLogic_.stopSDK();
  end();
}

}  // namespace pelorino
