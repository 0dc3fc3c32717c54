#include "Core.h"

#include <cstdio>
#include <utility>

#include "Entry.h"
#include "Host.h"
#include "HostCode.h"
#include "Logger.h"
#include "QueueManager.h"
#include "System.h"

namespace pelorino {

/// Never destroyed: a call may come while the process exits.
Guarded<std::shared_ptr<Core>>& Core::privateShared() {
  static auto& slot = *new Guarded<std::shared_ptr<Core>>;
  return slot;
}

std::shared_ptr<Core> Core::shared() {
  return privateShared().update([](std::shared_ptr<Core>& core) {
    if (!core) core = std::shared_ptr<Core>(new Core, EndsOnIncomeQueue());
    return core;
  });
}

void Core::destroy() {
  static_cast<void>(shared());  // Makes a core if there is none, so that its end is always printed.
  QueueManager::incomeQueue().addOperation([] {
    if (const auto core = privateShared().get()) core->stop();
    privateShared().set(nullptr);
  });
}

Core::Core()
    : analyticsProxy_(std::make_shared<AnalyticsProxy>()),
      peopleLogic_(std::make_shared<PeopleLogic>()),
      antiCheatLogic_(std::make_shared<AntiCheatLogic>()),
      messagingProxy_(std::make_shared<MessagingLogicProxy>()),
      analyticsObserver_(std::make_shared<AnalyticsObserver>()) {
  closeHostCodeAtExit();
}

Core::~Core() {
  // The start still waited for the application, so this core has paused the queue.
  if (becameActive_.get()) QueueManager::incomeQueue().resume();
  std::puts("PLRAnalytics deinit Core module");
}

void Core::initialize(std::string applicationKey,
                      std::optional<PLRAnalyticsConfigurationLocal> configuration) {
  // Now, and not in the start block: a start in the background may wait for a long time, and the
  // process may fork or exit meanwhile.
  refuseCallsAfterFork();
  closeHostCodeAtExit();
  const bool inBackground = Host::applicationState() == ApplicationState::background;
  if (inBackground) QueueManager::incomeQueue().pause();  // Before the start is queued.
  startInitialize(std::move(applicationKey), std::move(configuration));
  if (inBackground) waitForActive();
}

void Core::waitForActive() {
  becameActive_.set(System::current().notifications().observe(
      ApplicationNotification::didBecomeActive,
      [weak = weak_from_this()] { onLoadAction(weak.lock()); }));
  // Another thread may have made it active before it was observed.
  if (Host::applicationState() == ApplicationState::active) {
    onLoadAction(shared_from_this());
  }
}

/// `core` is null if it has been replaced meanwhile. The queue must go on even then.
void Core::onLoadAction(const std::shared_ptr<Core>& core) {
  if (core) core->becameActive_.set(nullptr);
  QueueManager::incomeQueue().resume();
}

void Core::startInitialize(std::string applicationKey,
                           std::optional<PLRAnalyticsConfigurationLocal> configuration) {
  if (isInitialized_.exchange(true)) {
    Logger::writeLog(PLRLogLevel::error,
                     "In the Initialize method an error has occurred: SDK is already initialized");
    return;
  }
  QueueManager::incomeQueue().addOperation([weak = weak_from_this(),
                                            applicationKey = std::move(applicationKey),
                                            configuration = std::move(configuration)] {
    // After a teardown this is no longer the current core and must not start.
    const auto self = weak.lock();
    if (self && self == privateShared().get()) self->start(applicationKey, configuration);
  });
}

}  // namespace pelorino
