// The start and the end of a run, on the incomeQueue. The order of the steps matters.

#include <exception>
#include <string_view>
#include <utility>

#include "Core.h"
#include "IdentityCalls.h"
#include "Logger.h"

namespace pelorino {
namespace {

void logError(std::string_view message, std::string_view detail) {
  Logger::writeLog(PLRLogLevel::error, [&] { return std::string(message).append(detail); });
}

constexpr std::string_view startFailed = "In the Initialize method an error has occurred: ";

/// Returns null and logs when the database cannot be opened.
std::unique_ptr<CoreFactory> initSubModules(const std::string& applicationKey) try {
  return std::make_unique<CoreFactory>(applicationKey);
} catch (const std::exception& error) {
  // A line of its own for the cause: the text of the next one is fixed.
  logError("[Database Module] Couldn't open the database: ", error.what());
  logError(startFailed, "Can't init submodules");
  return nullptr;
}

}  // namespace

void Core::start(const std::string& applicationKey,
                 std::optional<PLRAnalyticsConfigurationLocal> configuration) {
  // First, so that it applies to the messages of the next steps.
  if (configuration && configuration->logLevel != PLRLogLevel::unknown) {
    Logger::setLogLevel(configuration->logLevel);
  }
  const auto key = ValidatorRules::validateInitializeKey(applicationKey);
  if (!key) return;
  configuration = ValidatorRules::validateInitialize(std::move(configuration));
  auto coreFactory = initSubModules(*key);
  if (!coreFactory) return;
  const auto run =
      makeRun(std::move(coreFactory), *key, configuration ? configuration->userId : std::nullopt);
  if (!run) return;
  run->start(configuration);
  run_ = run;
  connectFronts();
}

/// Returns null and logs when the stored state can be neither read nor made.
std::shared_ptr<LibraryRun> Core::makeRun(std::unique_ptr<CoreFactory> coreFactory,
                                          const std::string& applicationKey,
                                          const std::optional<std::string>& userId) try {
  // `this` stays valid: only work of the run calls the closure, and the run ends before the core.
  return {new LibraryRun(std::move(coreFactory), applicationKey, userId,
                         [this] { return isEditorMode(); }),
          EndsOnIncomeQueue()};
} catch (const std::exception& error) {
  logError(startFailed, error.what());
  return nullptr;
}

void Core::connectFronts() {
  AnalyticsLogic& logic = run_->analyticsLogic();
  analyticsProxy_->initialize(&logic);
  analyticsObserver_->addLogicBroadcaster(&logic);
  peopleLogic_->setPeopleService(&run_->peopleService());
  antiCheatLogic_->setAntiCheatService(&run_->antiCheatService());
  messagingProxy_->setMessagingLogic(&run_->messagingLogic());
}

/// Afterwards the fronts refuse calls. A thread of the host may still hold this core in a call, but
/// only one run at a time may use the database.
void Core::stop() {
  if (!run_) return;
  run_->stop();
  analyticsProxy_->initialize(nullptr);
  analyticsObserver_->addLogicBroadcaster(nullptr);
  peopleLogic_->setPeopleService(nullptr);
  antiCheatLogic_->setAntiCheatService(nullptr);
  messagingProxy_->setMessagingLogic(nullptr);
  run_.reset();
}

}  // namespace pelorino
