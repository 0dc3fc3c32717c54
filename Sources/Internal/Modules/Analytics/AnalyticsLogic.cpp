#include "AnalyticsLogic.h"

#include "Logger.h"
#include "QueueManager.h"
#include "SdkConstraints.h"
#include "SessionEvents.h"

namespace pelorino {

AnalyticsLogic::AnalyticsLogic(Run& run, StateManager& stateManager, ServiceFactory& services,
                               const Clock& clock)
    : run_(run),
      stateManager_(stateManager),
      services_(services),
      userEvents_(stateManager, services.projectService, services.userService,
                  services.eventsService, services.reportService, services.peopleService, clock),
      userData_(services.userService, services.eventsService, services.currencyAccrualService,
                services.levelResourceService, services.reportService, services.peopleService),
      accruals_(stateManager, services.eventsService, services.currencyAccrualService,
                services.levelResourceService, userEvents_),
      activity_(stateManager, services.projectService, services.activityService,
                services.timerService, services.reportService, accruals_, userEvents_),
      events_(stateManager, services.projectService, userEvents_),
      identity_(stateManager, services.projectService, services.userService,
                services.levelResourceService, services.configService, services.reportService,
                userData_, accruals_, activity_, userEvents_),
      payments_(services.projectService, services.levelResourceService, userEvents_),
      progress_(stateManager, services.userService, services.currencyAccrualService,
                services.levelResourceService, accruals_, userEvents_),
      subscriptions_(stateManager, services.projectService, services.subscriptionService,
                     services.reportService, userEvents_) {}

void AnalyticsLogic::prepareCallBacks() {
  prepareTimerCallBacks();
  services_.eventsService.onFullStackAction = [this] {
    Logger::writeLog(PLRLogLevel::debug, "There are enough events for dispatching");
    services_.reportService.sendBufferedEvents();
  };
  services_.configService.onSdkConfigUpdate = [this](const Config& config) {
    receiveConfig(config);
  };
  services_.configService.onIdentifiersUpdate = [this](std::optional<std::int64_t> pelorinoId) {
    if (onBackendIdentifiersUpdate) onBackendIdentifiersUpdate(pelorinoId);
  };
  services_.reportService.onReportSendAction = [this] {
    if (services_.projectService.getTrackingAvailable() && services_.activityService.isActive()) {
      services_.timerService.resetRequestTimer();
    }
  };
  preparePeopleCardCallback();
}

void AnalyticsLogic::preparePeopleCardCallback() {
  // As a block of its own: the call that clears the card must end first.
  services_.peopleService.onClearedCard =
      run_.callback([this] { userEvents_.sendBufferedEvents(); });
  services_.peopleService.didChangeCheaterMark = [this] { userEvents_.generatePeopleEvent(false); };
}

void AnalyticsLogic::prepareTimerCallBacks() {
  TimerService& timers = services_.timerService;
  timers.onAliveTimerTick = [this] { activity_.sendAlive(); };
  timers.onCurrencyAccrualTimerTick = [this] {
    Logger::writeLog(PLRLogLevel::debug, "Currency accrual timer tick");
    accruals_.addCurrencyAccrual();
  };
  timers.onRequestTimerTick = [this] { userEvents_.sendBufferedEvents(); };
  timers.onActivityTimerTick = [this] { services_.activityService.updateLastBackgroundTime(); };
}

void AnalyticsLogic::applyAnalyticsConfiguration(
    const std::optional<PLRAnalyticsConfigurationLocal>& configuration) {
  if (!configuration) return;
  applyTracking(configuration->trackingAvailability);
  if (configuration->userId) stateManager_.activateUser(*configuration->userId);
  if (!configuration->level) return;
  // The stored sums belong to the old level.
  if (*configuration->level != stateManager_.getActiveUser()->level) {
    accruals_.addSavedCurrencyAccrualResources();
    services_.levelResourceService.removeResourcesForActiveUser();
    services_.userService.resourceAggregation(false);
  }
  services_.userService.setLevel(*configuration->level);
}

void AnalyticsLogic::applyTracking(PLRTrackingStatus trackingAvailability) {
  ProjectService& project = services_.projectService;
  if (!project.getTrackingAvailable() && trackingAvailability == PLRTrackingStatus::enable) {
    project.setTrackingAvailable(true);
    addTrackingStatus(true);
  }
  if (project.getTrackingAvailable() && trackingAvailability == PLRTrackingStatus::disable) {
    userData_.removeEventsAndResources();
    services_.timerService.stopTimers();
    project.setTrackingAvailable(false);
  }
}

void AnalyticsLogic::tryStartSDK() {
  if (services_.projectService.getTrackingAvailable()) {
    startSDK();
    return;
  }
  // Sent without being stored: nothing is stored while tracking is off.
  services_.reportService.sendFlashEvent(
      Event(TrackingStatus{.timestamp = userEvents_.now(), .trackingAllowed = false}));
  Logger::writeLog(PLRLogLevel::info, "SDK not active!\n\t Tracking status is Disable!");
}

void AnalyticsLogic::startSDK() {
  if (started_) Logger::writeLog(PLRLogLevel::error, "The SDK is already running!");
  if (services_.activityService.isActive()) {
    Logger::writeLog(PLRLogLevel::error, "Activity cannot be launched before the SDK starts!");
    return;
  }
  // Before a new session begins: the sums belong to the old one.
  accruals_.addSavedCurrencyAccrualResources();
  activity_.startActivity();
  activity_.sendDeviceInfo();
  userEvents_.generatePeopleEvent(true);
  services_.reportService.sendBufferedEvents();
  services_.configService.receiveSdkConfig();
  identity_.requestMissingBackendIds();
  started_ = true;
}

void AnalyticsLogic::stopSDK() {
  activity_.stopActivity();
  services_.subscriptionService.cancelRequest();
}

void AnalyticsLogic::receiveConfig(const Config& config) {
  const bool resetHistory = subscriptions_.checkIfNeedResetHistory(config);
  services_.projectService.applyConfig(config);
  if (onCustomEventParamsCountUpdate) onCustomEventParamsCountUpdate(customEventParamsCount());
  // One account for the device. Done at each answer: users that the disk refused to delete come
  // back with the next start.
  if (!config.userCounting) userData_.removeUsers(stateManager_.getInactiveProjectUsers());
  if (resetHistory) services_.subscriptionService.resetHistoryMark();
  // A restart applies the new periods at once. The answer may come when tracking is off; then the
  // timers must not run.
  services_.timerService.stopTimers();
  if (services_.projectService.getTrackingAvailable()) services_.timerService.startTimers();
  subscriptions_.startSubscriptionsService();
}

void AnalyticsLogic::forceUpdate() {
  if (!onBackendIdentifiersUpdate) return;
  onBackendIdentifiersUpdate(stateManager_.getActiveDeviceIdentifiers()->pelorinoId);
}

void AnalyticsLogic::goActive() {
  run_.add(QueueManager::incomeQueue(), [this] { activity_.startActivity(); });
}

void AnalyticsLogic::stopSession() {
  run_.add(QueueManager::incomeQueue(), [this] { activity_.stopActivity(); });
  // The system may suspend or end the process as soon as the host's notification returns.
  QueueManager::incomeQueue().waitUntilAllOperationsAreFinished();
}

void AnalyticsLogic::perform(SendBufferedEventsCall /*call*/) {
  userEvents_.sendBufferedEvents();
}

std::string AnalyticsLogic::answer(SDKVersionQuery /*query*/) {
  return SdkConstraints::sdkVersion();
}

bool AnalyticsLogic::answer(TrackingAvailabilityQuery /*query*/) {
  return services_.projectService.getTrackingAvailable();
}

void AnalyticsLogic::perform(SetTrackingAvailabilityCall call) {
  const bool value = call.isAvailable;
  if (services_.projectService.getTrackingAvailable() != value) {
    value ? enableTracking() : disableTracking();
    return;
  }
  Logger::writeLog(PLRLogLevel::info, value ? "Tracking status is already Enable"
                                            : "Tracking status is already Disable");
  if (value) addTrackingStatus(true);
}

void AnalyticsLogic::enableTracking() {
  services_.projectService.setTrackingAvailable(true);
  addTrackingStatus(true);
  if (!started_) {  // Tracking was off at the start.
    startSDK();
    return;
  }
  services_.reportService.sendBufferedEvents();
  activity_.startActivity();
  services_.configService.receiveSdkConfig();
  services_.configService.receiveUserBackendIds();
}

void AnalyticsLogic::disableTracking() {
  userData_.removeEventsAndResources();  // First: only the last events below may still be sent.
  activity_.stopActivity();
  services_.timerService.stopTimers();  // A configuration may have started them without activity.
  addTrackingStatus(false);             // Now, since nothing is stored once tracking is off.
  userEvents_.sendBufferedEvents();
  services_.projectService.setTrackingAvailable(false);
  stateManager_.updateDeviceIdentifiers(std::nullopt, std::nullopt, std::nullopt);
}

void AnalyticsLogic::addTrackingStatus(bool trackingAllowed) {
  userEvents_.addAsIs(
      TrackingStatus{.timestamp = userEvents_.now(), .trackingAllowed = trackingAllowed});
}

}  // namespace pelorino
