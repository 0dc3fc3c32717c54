#include "AnalyticsLogic.h"

#include <utility>

#include "EndedOnIncomeQueue.h"
#include "Event.h"
#include "Logger.h"
#include "QueueManager.h"
#include "TrackingStatus.h"

namespace pelorino {

std::shared_ptr<AnalyticsLogic> AnalyticsLogic::make(
    AnalyticsServices services, std::shared_ptr<LifeCycleRepositoryProtocol> lifeCycle,
    const Clock& clock) {
  std::shared_ptr<AnalyticsLogic> logic(
      new AnalyticsLogic(std::move(services), std::move(lifeCycle), clock), EndedOnIncomeQueue());
  logic->lifeCycle_->setLifeCycleListener(logic);
  return logic;
}

AnalyticsLogic::AnalyticsLogic(AnalyticsServices services,
                               std::shared_ptr<LifeCycleRepositoryProtocol> lifeCycle,
                               const Clock& clock)
    : services_(std::move(services)),
      lifeCycle_(std::move(lifeCycle)),
      clock_(clock),
      customEventParamsCount_(services_.projectService->paramsCount()) {}

void AnalyticsLogic::prepareCallBacks() {
  prepareTimerCallBacks();
  services_.eventsService->onFullStackAction = [weak = weak_from_this()] {
    Logger::writeLog(PLRLogLevel::debug, "There are enough events for dispatching");
    if (const auto self = weak.lock()) self->services_.reportService->sendBufferedEvents();
  };
  services_.configService->onSdkConfigUpdate = [weak = weak_from_this()](const Config& config) {
    if (const auto self = weak.lock()) self->receiveConfig(config);
  };
  services_.reportService->onReportSendAction = [weak = weak_from_this()] {
    const auto self = weak.lock();
    if (!self) return;
    const AnalyticsServices& services = self->services_;
    if (services.projectService->getTrackingAvailable() && services.activityService->isActive()) {
      services.timerService->resetRequestTimer();
    }
  };
  preparePeopleCardCallback();
}

void AnalyticsLogic::prepareTimerCallBacks() {
  TimerService& timers = *services_.timerService;
  timers.onAliveTimerTick = onIncomeQueue([](AnalyticsLogic& logic) { logic.sendAlive(); });
  timers.onCurrencyAccrualTimerTick = onIncomeQueue([](AnalyticsLogic& logic) {
    Logger::writeLog(PLRLogLevel::debug, "Currency accrual timer tick");
    logic.addCurrencyAccrual();
  });
  timers.onRequestTimerTick =
      onIncomeQueue([](AnalyticsLogic& logic) { logic.sendBufferedEvents(); });
  timers.onActivityTimerTick = onIncomeQueue(
      [](AnalyticsLogic& logic) { logic.services_.activityService->updateLastBackgroundTime(); });
}

void AnalyticsLogic::applyAnalyticsConfiguration(
    const std::optional<PLRAnalyticsConfigurationLocal>& configuration) {
  if (!configuration) return;
  applyTracking(configuration->trackingAvailability);
  if (configuration->userId) services_.stateManager->activateUser(*configuration->userId);
  if (!configuration->level) return;
  if (*configuration->level != services_.stateManager->getActiveUser()->level) {
    addSavedCurrencyAccrualResources();
    services_.levelResourceService->removeResourcesForActiveUser();
    services_.userService->resourceAggregation(false);
  }
  services_.userService->setLevel(*configuration->level);
}

void AnalyticsLogic::applyTracking(PLRTrackingStatus trackingAvailability) {
  ProjectService& project = *services_.projectService;
  if (!project.getTrackingAvailable() && trackingAvailability == PLRTrackingStatus::enable) {
    project.setTrackingAvailable(true);
    addTrackingStatus(true);
  }
  if (project.getTrackingAvailable() && trackingAvailability == PLRTrackingStatus::disable) {
    removeEventsAndResources();
    services_.timerService->stopTimers();
    project.setTrackingAvailable(false);
  }
}

void AnalyticsLogic::tryStartSDK() {
  if (services_.projectService->getTrackingAvailable()) {
    startSDK();
    return;
  }
  services_.reportService->sendFlashEvent(
      Event(TrackingStatus{.timestamp = clock_.milliseconds(), .trackingAllowed = false}));
  Logger::writeLog(PLRLogLevel::info, "SDK not active!\n\t Tracking status is Disable!");
}

void AnalyticsLogic::startSDK() {
  if (started_) Logger::writeLog(PLRLogLevel::error, "The SDK is already running!");
  if (services_.activityService->isActive()) {
    Logger::writeLog(PLRLogLevel::error, "Activity cannot be launched before the SDK starts!");
    return;
  }
  addSavedCurrencyAccrualResources();
  startActivity();
  sendDeviceInfo();
  generatePeopleEvent(true);
  services_.reportService->sendBufferedEvents();
  services_.configService->receiveSdkConfig();
  requestMissingBackendIds();
  started_ = true;
}

void AnalyticsLogic::stopSDK() {
  lifeCycle_->setLifeCycleListener({});
  stopActivity();
  services_.configService->stop();
  services_.subscriptionService->stop();
}

void AnalyticsLogic::receiveConfig(const Config& config) {
  const bool resetHistory = checkIfNeedResetHistory(config);
  services_.projectService->applyConfig(config);
  customEventParamsCount_ = services_.projectService->paramsCount();
  // With one account for the device. Where the process died or the disk failed amid the removal, a
  // later answer makes up for it.
  if (!config.userCounting) removeUsers(services_.stateManager->getInactiveProjectUsers());
  if (resetHistory) services_.subscriptionService->resetHistoryMark();
  // Begun anew, so that the new periods apply at once. With tracking off nothing ticks, whenever
  // the answer comes.
  services_.timerService->stopTimers();
  if (services_.projectService->getTrackingAvailable()) services_.timerService->startTimers();
  startSubscriptionsService();
}

void AnalyticsLogic::setOnBackendIdentifiersUpdate(IdentifiersUpdate onBackendIdentifiersUpdate) {
  services_.configService->onIdentifiersUpdate = std::move(onBackendIdentifiersUpdate);
}

void AnalyticsLogic::forceUpdate() {
  const auto& tell = services_.configService->onIdentifiersUpdate;
  if (tell) tell(services_.stateManager->getActiveDeviceIdentifiers()->pelorinoId);
}

}  // namespace pelorino
