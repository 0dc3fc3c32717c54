#include "UserService.h"

#include <fmt/format.h>

#include <string>
#include <utility>

#include "Logger.h"

namespace pelorino {

UserService::UserService(StateManager& stateManager, UserRepository& userRepository,
                         TutorialRepository& tutorialRepository)
    : stateManager_(stateManager),
      userRepository_(userRepository),
      tutorialRepository_(tutorialRepository) {}

void UserService::setUserLevel(std::int64_t level) {
  const auto& user = stateManager_.getActiveUser();
  user->level = level;
  userRepository_.update(*user);
}

void UserService::setLevel(std::int64_t level) {
  setUserLevel(level);
  Logger::writeLog(PLRLogLevel::info, [&] {
    return fmt::format("Set level [{}] for user [{}]", level,
                       stateManager_.getActiveUser()->userId.value_or(""));
  });
}

void UserService::removeUsers(const std::vector<std::shared_ptr<User>>& users) {
  userRepository_.deleteItems(users);
}

void UserService::resourceAggregation(bool isActive) {
  const auto& user = stateManager_.getActiveUser();
  user->isResourceAggregationEnable = isActive;
  userRepository_.update(*user);
  Logger::writeLog(PLRLogLevel::debug,
                   isActive ? "Resource aggregation is Enable" : "Resource aggregation is Disable");
}

void UserService::activateLocation(Location location) {
  location_ = std::move(location);
}

void UserService::clearLocation(bool writeLog) {
  if (location_ && writeLog) {
    Logger::writeLog(PLRLogLevel::debug, [&] {
      return fmt::format("The location: {} has been canceled", location_->name);
    });
  }
  location_.reset();
}

bool UserService::isTutorialStepMarked(std::int64_t step) const {
  return tutorialRepository_.findOfUser(
             stateManager_.getActiveUser()->idKey,
             [&](const TutorialMark& mark) { return mark.step == step; }) != nullptr;
}

void UserService::markTutorialStep(std::int64_t step) {
  // A mark without a stored user would belong to nobody after a restart.
  if (!stateManager_.ensureActiveUserIsStored() || isTutorialStepMarked(step)) return;
  tutorialRepository_.insert(std::make_shared<TutorialMark>(
      TutorialMark{.userId = stateManager_.getActiveUser()->idKey, .step = step}));
}

void UserService::changeCurBalanceSentMark(bool isSent) {
  stateManager_.getActiveUser()->balanceIsSent = isSent;
}

bool UserService::isBalanceSentForActiveUser() const {
  return stateManager_.getActiveUser()->balanceIsSent;
}

}  // namespace pelorino
