#include "CoreManager.h"

#include <utility>

#include "CoreHelper.h"

namespace pelorino {

CoreManager::CoreManager(std::string applicationKey, ProjectRepository& projectRepository,
                         UserRepository& userRepository, const Clock& clock)
    : applicationKey_(std::move(applicationKey)),
      projectRepository_(projectRepository),
      userRepository_(userRepository),
      clock_(clock) {}

std::shared_ptr<Project> CoreManager::createOrActivateProject() {
  // One time for the whole process, however often the library starts.
  static const std::int64_t time = clock_.milliseconds();
  const auto setTime = [](Config& config) {
    if (config.serverTime == 0) config.serverTime = time;
  };
  for (const auto& project : projectRepository_.list()) {
    if (project->applicationKey != applicationKey_) continue;
    setTime(project->configuration);  // A stored text that cannot be decoded gives the defaults.
    return project;
  }
  auto project = std::make_shared<Project>(applicationKey_);
  setTime(project->configuration);
  projectRepository_.insert(project);
  return project;
}

std::shared_ptr<User> CoreManager::createOrActivateUser(const std::string& userId, Project& project,
                                                        bool setByDefault) {
  CoreHelper helper(userId, project, setByDefault, projectRepository_, userRepository_,
                    resetToAbsent());
  return helper.activateUser(helper.defineActiveUser());
}

std::shared_ptr<User> CoreManager::createOrActivateDefaultUser(const std::string& userId,
                                                               Project& project) {
  CoreHelper helper(userId, project, true, projectRepository_, userRepository_, resetToAbsent());
  return helper.activateUser(helper.defineDefaultUser());
}

void CoreManager::activateUser(const std::shared_ptr<User>& user, Project& project) {
  CoreHelper helper(user->userId.value_or(""), project, user->isDefaultUser, projectRepository_,
                    userRepository_, resetToAbsent());
  helper.activateUser(user);
}

bool CoreManager::ensureStored(const std::shared_ptr<User>& user, Project& project) {
  if (user->idKey != notStoredRowId) return true;
  if (!userRepository_.insert(user)) return false;
  project.activeUserId = user->idKey;
  projectRepository_.update(project);
  return true;
}

std::function<void()> CoreManager::resetToAbsent() const {
  return [reset = onIndetifiersReset] {
    if (reset) reset(std::nullopt, std::nullopt, std::nullopt);
  };
}

}  // namespace pelorino
