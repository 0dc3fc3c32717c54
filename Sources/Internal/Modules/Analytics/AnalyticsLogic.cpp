#include "AnalyticsLogic.h"

#include <utility>

#include "CustomEvent.h"
#include "Event.h"
#include "HostCall.h"
#include "Logger.h"
#include "QueueManager.h"
#include "SdkConstraints.h"
#include "TrackingStatus.h"

namespace pelorino {

std::shared_ptr<AnalyticsLogic> AnalyticsLogic::make(
    AnalyticsServices services, std::shared_ptr<LifeCycleRepositoryProtocol> lifeCycle,
    const Clock& clock) {
  std::shared_ptr<AnalyticsLogic> logic(
      new AnalyticsLogic(std::move(services), std::move(lifeCycle), clock));
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
  services_.eventsService->onFullStackAction = [weak = weak_from_this()] {
    Logger::writeLog(PLRLogLevel::debug, "There are enough events for dispatching");
    if (const auto self = weak.lock()) self->services_.reportService->sendBufferedEvents();
  };
}

void AnalyticsLogic::applyAnalyticsConfiguration(
    const std::optional<PLRAnalyticsConfigurationLocal>& configuration) {
  if (!configuration) return;
  applyTracking(configuration->trackingAvailability);
  if (configuration->userId) services_.stateManager->activateUser(*configuration->userId);
  if (configuration->level) applyLevel(*configuration->level);
}

void AnalyticsLogic::applyTracking(PLRTrackingStatus trackingAvailability) {
  ProjectService& project = *services_.projectService;
  if (!project.getTrackingAvailable() && trackingAvailability == PLRTrackingStatus::enable) {
    project.setTrackingAvailable(true);
    services_.eventsService->addEvent(
        Event(TrackingStatus{.timestamp = clock_.milliseconds(), .trackingAllowed = true}));
  }
  if (project.getTrackingAvailable() && trackingAvailability == PLRTrackingStatus::disable) {
    removeEventsAndResources();
    project.setTrackingAvailable(false);
  }
}

void AnalyticsLogic::applyLevel(std::int64_t level) {
  const User& user = *services_.stateManager->getActiveUser();
  if (level != user.level) {
    services_.levelResourceService->removeResources(user.idKey);
    services_.userService->resourceAggregation(false);
  }
  services_.userService->setLevel(level);
}

void AnalyticsLogic::removeEventsAndResources() {
  services_.eventsService->removeAllEvents();
  services_.reportService->removeAllReports();
  services_.levelResourceService->removeAllResources();
  services_.currencyAccrualService->removeAllResources();
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
  startActivity();
  sendDeviceInfo();
  services_.reportService->sendBufferedEvents();
  started_ = true;
}

void AnalyticsLogic::stopSDK() {
  lifeCycle_->setLifeCycleListener({});
  stopActivity();
}

void AnalyticsLogic::getDeviceId(TextHandler completionHandler) {
  callHost(completionHandler,
           services_.stateManager->getActiveDeviceIdentifiers()->deviceIdentifier);
}

void AnalyticsLogic::getSDKVersion(TextHandler completionHandler) {
  callHost(completionHandler, SdkConstraints::sdkVersion());
}

void AnalyticsLogic::getTrackingAvailability(BoolHandler completionHandler) {
  callHost(completionHandler, services_.projectService->getTrackingAvailable());
}

void AnalyticsLogic::getUserId(TextHandler completionHandler) {
  callHost(completionHandler, services_.stateManager->getActiveUser()->userId.value_or(""));
}

void AnalyticsLogic::getCurrentLevel(IntegerHandler completionHandler) {
  callHost(completionHandler, services_.stateManager->getActiveUser()->level);
}

void AnalyticsLogic::customEvent(std::string eventName, AnyCodable::Object parameters) {
  const User& user = *services_.stateManager->getActiveUser();
  if (!user.sessionId) return;
  services_.eventsService->addEvent(Event(CustomEvent{.timestamp = clock_.milliseconds(),
                                                      .sessionId = *user.sessionId,
                                                      .level = user.level,
                                                      .name = std::move(eventName),
                                                      .parameters = std::move(parameters)}));
}

void AnalyticsLogic::sendBufferedEvents() {
  services_.reportService->sendBufferedEvents();
}

std::int64_t AnalyticsLogic::getCustomEventParamsCount() {
  return customEventParamsCount_;
}

void AnalyticsLogic::setOnBackendIdentifiersUpdate(IdentifiersUpdate onBackendIdentifiersUpdate) {
  onBackendIdentifiersUpdate_ = std::move(onBackendIdentifiersUpdate);
}

void AnalyticsLogic::forceUpdate() {
  if (!onBackendIdentifiersUpdate_) return;
  onBackendIdentifiersUpdate_(services_.stateManager->getActiveDeviceIdentifiers()->pelorinoId);
}

}  // namespace pelorino
