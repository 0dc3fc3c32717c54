#include "ProjectService.h"

#include <utility>

#include "Logger.h"

namespace pelorino {

ProjectService::ProjectService(std::shared_ptr<StateManager> stateManager,
                               std::shared_ptr<ProjectRepository> projectRepository)
    : stateManager_(std::move(stateManager)), projectRepository_(std::move(projectRepository)) {}

void ProjectService::setTrackingAvailable(bool available) {
  for (const auto& project : projectRepository_->list()) {
    project->trackingAvailable = available;
    projectRepository_->update(project);
  }
  Logger::writeLog(PLRLogLevel::info,
                   available ? "Tracking status is Enable" : "Tracking status is Disable");
}

bool ProjectService::getTrackingAvailable() const {
  return stateManager_->getActiveProject()->trackingAvailable;
}

std::int64_t ProjectService::paramsCount() const {
  return stateManager_->getActiveProject()->configuration.eventParamsCount;
}

}  // namespace pelorino
