#include "IdentityLogic.h"

#include <fmt/format.h>

#include <algorithm>

#include "Logger.h"

namespace pelorino {

std::string IdentityLogic::answer(DeviceIdQuery /*query*/) {
  return stateManager_.getActiveDeviceIdentifiers()->deviceIdentifier;
}

std::string IdentityLogic::answer(UserIdQuery /*query*/) {
  return stateManager_.getActiveUser()->userId.value_or("");
}

std::int64_t IdentityLogic::answer(CurrentLevelQuery /*query*/) {
  return stateManager_.getActiveUser()->level;
}

void IdentityLogic::perform(const SetUserIdCall& call) {
  const std::string& userId = call.userId;
  const auto& active = stateManager_.getActiveUser();
  const std::optional<std::string> old = active->userId;
  if (old == userId) {
    Logger::writeLog(PLRLogLevel::warning, [&] {
      return fmt::format("The current userId is equal to the new userId [{}]!", userId);
    });
    return;
  }
  if (userId == stateManager_.getActiveDeviceIdentifiers()->deviceIdentifier) {
    Logger::writeLog(PLRLogLevel::warning, [&] {
      return fmt::format(
          "The userId matches the deviceId [{}]!\t\nSetting up a userId is not possible!", userId);
    });
    return;
  }
  if (active->isDefaultUser && userId.empty()) {
    Logger::writeLog(PLRLogLevel::warning, "The current user is already a default user!");
    return;
  }
  // Otherwise the same user may go on under another name, and the session continues.
  if (!active->isDefaultUser && projectService_.userCounting()) {
    switchUser(userId);
  } else {
    stateManager_.activateUser(userId);
  }
  const User& user = *stateManager_.getActiveUser();
  Logger::writeLog(PLRLogLevel::info, [&] {
    return fmt::format("The userId [{}] changed to [{}]!", old.value_or(""),
                       user.userId.value_or(""));
  });
  if (user.isDefaultUser) Logger::writeLog(PLRLogLevel::debug, "Default user activated!");
  if (projectService_.getTrackingAvailable()) requestMissingBackendIds();
}

void IdentityLogic::switchUser(const std::string& userId) {
  // These two act on the active user, so they come before the switch.
  accruals_.addCurrencyAccrual();
  activity_.stopActivity();
  stateManager_.activateUser(userId);
  userService_.clearLocation(true);
  userService_.changeCurBalanceSentMark(false);
  activity_.startActivity();
  activity_.sendDeviceInfo();
  reportService_.sendBufferedEvents();
}

void IdentityLogic::perform(const ReplaceUserIdCall& call) {
  const std::string& from = call.prevUserName;
  const std::string& to = call.userName;
  const auto users = stateManager_.getProjectUsers();
  const auto userOf = [&users](const std::string& userId) {
    const auto found =
        std::ranges::find_if(users, [&](const auto& user) { return user->userId == userId; });
    return found == users.end() ? nullptr : *found;
  };
  const auto renamed = userOf(from);
  if (!renamed) {
    Logger::writeLog(PLRLogLevel::warning, [&] {
      return fmt::format("The userId: [{}] not found!\t\nReplace not possible!", from);
    });
    return;
  }
  if (to == stateManager_.getActiveDeviceIdentifiers()->deviceIdentifier) {
    Logger::writeLog(PLRLogLevel::warning, [&] {
      return fmt::format("The toUserId matches the deviceId [{}]!\t\nReplace not possible!", to);
    });
    return;
  }
  if (from == to) {
    Logger::writeLog(PLRLogLevel::warning, [&] {
      return fmt::format("The fromUserId is equal to the toUserId [{}]!\t\nReplace not possible!",
                         to);
    });
    return;
  }
  const std::optional<std::string> old = stateManager_.getActiveUser()->userId;
  if (const auto inTheWay = userOf(to)) {
    // The active user must not be removed.
    if (old == to) stateManager_.activateUser(renamed);
    userData_.removeUsers({inTheWay});
  }
  stateManager_.replaceUserId(renamed, to);
  if (projectService_.getTrackingAvailable()) requestMissingBackendIds();
  const User& active = *stateManager_.getActiveUser();
  if (!active.isDefaultUser && projectService_.userCounting() && active.userId != old) {
    userService_.clearLocation(true);
  }
  activity_.sendDeviceInfo();
  events_.sendBufferedEvents();
  Logger::writeLog(PLRLogLevel::info,
                   [&] { return fmt::format("UserId: [{}] renamed to [{}]", from, to); });
}

void IdentityLogic::requestMissingBackendIds() {
  const auto identifiers = stateManager_.getActiveDeviceIdentifiers();
  if (!identifiers->pelorinoId || !identifiers->pelorinoIdTimestamp) {
    configService_.receiveUserBackendIds();
  }
}

void IdentityLogic::perform(SetCurrentLevelCall call) {
  const User& user = *stateManager_.getActiveUser();
  if (user.level != call.level) {  // What was collected belongs to the old level.
    accruals_.addCurrencyAccrual();
    reportService_.sendBufferedEvents();
    levelResourceService_.removeResourcesForActiveUser();
    userService_.resourceAggregation(false);
  }
  userService_.setLevel(call.level);
}

}  // namespace pelorino
