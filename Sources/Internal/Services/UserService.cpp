#include "UserService.h"

#include <fmt/format.h>

#include <string>
#include <utility>

#include "Logger.h"

namespace pelorino {

UserService::UserService(std::shared_ptr<StateManager> stateManager,
                         std::shared_ptr<UserRepository> userRepository)
    : stateManager_(std::move(stateManager)), userRepository_(std::move(userRepository)) {}

void UserService::setLevel(std::int64_t level) {
  const auto& user = stateManager_->getActiveUser();
  user->level = level;
  userRepository_->update(user);
  Logger::writeLog(PLRLogLevel::info, [&] {
    return fmt::format("Set level [{}] for user [{}]", level, user->userId.value_or(""));
  });
}

void UserService::removeUsers(const std::vector<std::shared_ptr<User>>& users) {
  userRepository_->deleteItems(users);
}

void UserService::resourceAggregation(bool isActive) {
  const auto& user = stateManager_->getActiveUser();
  user->isResourceAggregationEnable = isActive;
  userRepository_->update(user);
  Logger::writeLog(PLRLogLevel::debug,
                   isActive ? "Resource aggregation is Enable" : "Resource aggregation is Disable");
}

}  // namespace pelorino
