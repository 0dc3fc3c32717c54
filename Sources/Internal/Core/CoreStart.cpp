// The start of the library, on the incomeQueue: the order of these steps is its contract.

#include <exception>
#include <utility>

#include "ApplicationLifeCycle.h"
#include "Backend.h"
#include "BackendRepository.h"
#include "ContentFactory.h"
#include "Core.h"
#include "CoreManager.h"
#include "DeviceManager.h"
#include "Host.h"
#include "IdentityCalls.h"
#include "LifeCycleRepository.h"
#include "Logger.h"
#include "Network.h"
#include "PlatformStorage.h"
#include "PlatformiOS.h"
#include "ResolvedHost.h"
#include "SQLiteProvider.h"
#include "ServiceFactory.h"
#include "System.h"

namespace pelorino {

void Core::start(const std::string& applicationKey,
                 std::optional<PLRAnalyticsConfigurationLocal> configuration) {
  // First, so that the messages of the next steps already obey it.
  if (configuration && configuration->logLevel != PLRLogLevel::unknown) {
    Logger::setLogLevel(configuration->logLevel);
  }
  const auto key = ValidatorRules::validateInitializeKey(applicationKey);
  if (!key) return;
  configuration = ValidatorRules::validateInitialize(std::move(configuration));
  if (const auto coreFactory = initSubModules(*key)) startLogic(coreFactory, *key, configuration);
}

std::shared_ptr<CoreFactory> Core::initSubModules(const std::string& applicationKey) {
  try {
    auto platform = std::make_shared<PlatformiOS>(std::make_shared<PlatformStorage>());
    auto lifeCycle = std::make_shared<LifeCycleRepository>(
        std::make_unique<ApplicationLifeCycle>(System::current().notifications()));
    auto backend = std::make_shared<Backend>(std::make_shared<BackendRepository>(
        std::make_shared<Network>(Host::http()), std::make_shared<ContentFactory>()));
    auto database =
        std::make_shared<SQLiteProvider>(applicationKey, Host::facts().supportDirectory());
    return std::make_shared<CoreFactory>(std::move(lifeCycle), std::move(backend),
                                         std::move(platform), std::move(database));
  } catch (const std::exception& error) {
    Logger::writeLog(PLRLogLevel::error, [&] {
      return std::string("[Database Module] Couldn't open the database: ") + error.what();
    });
    Logger::writeLog(PLRLogLevel::error,
                     "In the Initialize method an error has occurred: Can't init submodules");
    return nullptr;
  }
}

std::shared_ptr<StateManager> Core::makeStateManager(CoreFactory& coreFactory,
                                                     const std::string& applicationKey,
                                                     const std::optional<std::string>& userId) try {
  auto deviceManager = std::make_shared<DeviceManager>(
      coreFactory.identifiersRepository(), coreFactory.toolsRepository(), coreFactory.platform(),
      System::current().executor());
  auto coreManager = std::make_shared<CoreManager>(applicationKey, coreFactory.projectRepository(),
                                                   coreFactory.userRepository());
  return std::make_shared<StateManager>(std::move(deviceManager), std::move(coreManager),
                                        coreFactory.userRepository(), userId,
                                        [weak = weak_from_this()] {
                                          const auto core = weak.lock();
                                          return core && core->isEditorMode();
                                        });
} catch (const std::exception& error) {
  Logger::writeLog(PLRLogLevel::error, [&] {
    return std::string("In the Initialize method an error has occurred: ") + error.what();
  });
  return nullptr;
}

void Core::startLogic(const std::shared_ptr<CoreFactory>& coreFactory,
                      const std::string& applicationKey,
                      const std::optional<PLRAnalyticsConfigurationLocal>& configuration) {
  System& system = System::current();
  auto stateManager = makeStateManager(*coreFactory, applicationKey,
                                       configuration ? configuration->userId : std::nullopt);
  if (!stateManager) return;
  ServiceFactory serviceFactory(coreFactory, std::move(stateManager), system.clock(),
                                system.executor());
  const auto logic = AnalyticsLogic::make(serviceFactory.analyticsServices(),
                                          coreFactory->lifeCycle(), system.clock());
  logic->prepareCallBacks();
  logic->applyAnalyticsConfiguration(configuration);
  logic->tryStartSDK();
  analyticsProxy_->initialize(logic);
  analyticsObserver_->addLogicBroadcaster(logic);
  peopleLogic_->setPeopleService(serviceFactory.peopleService());
}

}  // namespace pelorino
