#include "CoreHelper.h"

#include <algorithm>
#include <utility>

namespace pelorino {

CoreHelper::CoreHelper(std::string userId, Project& project, bool setByDefault,
                       ProjectRepository& projectRepository, UserRepository& userRepository,
                       std::function<void()> resetClouser)
    : userId_(std::move(userId)),
      project_(project),
      setByDefault_(setByDefault),
      projectRepository_(projectRepository),
      userRepository_(userRepository),
      resetClouser_(std::move(resetClouser)),
      projectUsers_(userRepository_.ofProject(project_.idKey)) {}

std::shared_ptr<User> CoreHelper::defineActiveUser() {
  auto current = getCurrentUser();
  if (!setByDefault_) return getByAccountingType(current);
  if (current->isDefaultUser && current->userId != userId_) changeUserState(*current);
  return current;
}

std::shared_ptr<User> CoreHelper::defineDefaultUser() {
  const auto current = getCurrentUser();
  return current->isDefaultUser ? current : getByAccountingType(current);
}

std::shared_ptr<User> CoreHelper::activateUser(std::shared_ptr<User> user) {
  if (project_.activeUserId == user->idKey) return user;
  // The reset comes first: if the process dies in between, the new user must not get the
  // identifiers of the old one.
  resetClouser_();
  // A user without a row is active in memory only: the next start must find the last stored one.
  if (user->idKey != notStoredRowId) {
    project_.activeUserId = user->idKey;
    projectRepository_.update(project_);
  }
  return user;
}

std::shared_ptr<User> CoreHelper::getCurrentUser() {
  if (activeUser_) return activeUser_;
  if (project_.activeUserId) {
    const auto found = std::ranges::find_if(
        projectUsers_, [&](const auto& user) { return user->idKey == *project_.activeUserId; });
    if (found != projectUsers_.end()) activeUser_ = *found;
  }
  // The row of the last active user may never have been stored. Search by name before inserting:
  // names are unique in a project.
  if (!activeUser_) activeUser_ = findRequestedUser();
  if (!activeUser_) activeUser_ = insertUser();
  return activeUser_;
}

std::shared_ptr<User> CoreHelper::getByAccountingType(const std::shared_ptr<User>& current) {
  if (!project_.configuration.userCounting) {  // One account for the device.
    if (current->userId != userId_) changeUserState(*current);
    return current;
  }
  if (auto known = findRequestedUser()) return known;
  if (current->isDefaultUser) {  // The first named user takes over the default user's row.
    changeUserState(*current);
    return current;
  }
  if (current->userId == userId_) return current;
  return insertUser();
}

std::shared_ptr<User> CoreHelper::findRequestedUser() const {
  const auto found = std::ranges::find_if(
      projectUsers_, [&](const auto& user) { return user->userId == userId_; });
  return found == projectUsers_.end() ? nullptr : *found;
}

std::shared_ptr<User> CoreHelper::insertUser() {
  auto user = std::make_shared<User>(project_.idKey, userId_, setByDefault_);
  userRepository_.insert(user);
  return user;
}

void CoreHelper::changeUserState(User& user) {
  resetClouser_();
  // The row stays the same: what is stored for the user goes on under the new name.
  user.previousUserId = user.userId;
  user.userId = userId_;
  user.isDefaultUser = setByDefault_;
  userRepository_.update(user);
}

}  // namespace pelorino
