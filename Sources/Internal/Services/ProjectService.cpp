#include "ProjectService.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "JsonHelpers.h"
#include "Logger.h"
#include "Validator.h"

namespace pelorino {

Config mergedConfig(const Config& stored, Config received) {
  const bool sameExclude = stored.exclude && received.exclude
                               ? stored.exclude->version == received.exclude->version
                               : !stored.exclude && !received.exclude;
  // An equal version means that the backend has left the content out.
  if (sameExclude) received.exclude = stored.exclude;
  if (received.sbsConfigVersion == stored.sbsConfigVersion) received.sbsBundles = stored.sbsBundles;
  return received;
}

ProjectService::ProjectService(StateManager& stateManager, ProjectRepository& projectRepository,
                               RealPaymentRepository& realPaymentRepository)
    : stateManager_(stateManager),
      projectRepository_(projectRepository),
      realPaymentRepository_(realPaymentRepository) {}

void ProjectService::setTrackingAvailable(bool available) {
  // The decision holds for the whole program, whatever the application key.
  for (const auto& project : projectRepository_.list()) {
    project->trackingAvailable = available;
    projectRepository_.update(*project);
  }
  Logger::writeLog(PLRLogLevel::info,
                   available ? "Tracking status is Enable" : "Tracking status is Disable");
}

bool ProjectService::getTrackingAvailable() const {
  return stateManager_.getActiveProject()->trackingAvailable;
}

bool ProjectService::userCounting() const {
  return stateManager_.getActiveProject()->configuration.userCounting;
}

std::int64_t ProjectService::paramsCount() const {
  return stateManager_.getActiveProject()->configuration.eventParamsCount;
}

void ProjectService::applyConfig(const Config& received) {
  const auto& project = stateManager_.getActiveProject();
  project->configuration = mergedConfig(project->configuration, received);
  projectRepository_.update(*project);
  Logger::writeLog(PLRLogLevel::debug, [&] {
    return "The SDK analytics configuration has been received:\n " +
           toPrettyJson(project->configuration);
  });
  const auto& exclude = project->configuration.exclude;
  Validator::setExcludedOptions(exclude ? exclude->events : std::nullopt);
}

bool ProjectService::isCurrencyPaymentMarked(const std::string& orderId) const {
  return realPaymentRepository_.findOfProject(
             stateManager_.getActiveProject()->idKey,
             [&](const RealPaymentMark& mark) { return mark.orderId == orderId; }) != nullptr;
}

void ProjectService::markCurrencyPayment(const std::string& orderId) {
  if (isCurrencyPaymentMarked(orderId)) {
    Logger::writeLog(PLRLogLevel::warning, [&] {
      return fmt::format("Real currency payment with same order id [{}] already marked!", orderId);
    });
    return;
  }
  realPaymentRepository_.insert(std::make_shared<RealPaymentMark>(
      RealPaymentMark{.projectId = stateManager_.getActiveProject()->idKey, .orderId = orderId}));
}

bool ProjectService::isRefererSent() const {
  return stateManager_.getActiveProject()->isReferralSent;
}

void ProjectService::setIsRefererSent(bool isSent) {
  const auto& project = stateManager_.getActiveProject();
  if (!project->trackingAvailable) return;
  project->isReferralSent = isSent;
  projectRepository_.update(*project);
}

}  // namespace pelorino
