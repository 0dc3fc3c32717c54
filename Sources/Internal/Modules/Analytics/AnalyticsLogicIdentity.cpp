// Who is playing, at which level, and whether anything may be told of them.

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <string_view>

#include "AnalyticsLogic.h"
#include "HostClosure.h"
#include "Logger.h"
#include "SdkConstraints.h"
#include "TrackingStatus.h"

namespace pelorino {

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

void AnalyticsLogic::setUserId(std::string userId) {
  const auto& active = services_.stateManager->getActiveUser();
  const std::optional<std::string> old = active->userId;
  if (old == userId) {
    Logger::writeLog(PLRLogLevel::warning, [&] {
      return fmt::format("The current userId is equal to the new userId [{}]!", userId);
    });
    return;
  }
  if (userId == services_.stateManager->getActiveDeviceIdentifiers()->deviceIdentifier) {
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
  if (!active->isDefaultUser && services_.projectService->userCounting()) {
    switchUser(userId);
  } else {
    services_.stateManager->activateUser(userId);
  }
  const User& user = *services_.stateManager->getActiveUser();
  Logger::writeLog(PLRLogLevel::info, [&] {
    return fmt::format("The userId [{}] changed to [{}]!", old.value_or(""),
                       user.userId.value_or(""));
  });
  if (user.isDefaultUser) Logger::writeLog(PLRLogLevel::debug, "Default user activated!");
  if (services_.projectService->getTrackingAvailable()) requestMissingBackendIds();
}

void AnalyticsLogic::switchUser(const std::string& userId) {
  addCurrencyAccrual();
  stopActivity();
  services_.stateManager->activateUser(userId);
  services_.userService->clearLocation(true);
  services_.userService->changeCurBalanceSentMark(false);
  startActivity();
  sendDeviceInfo();
  services_.reportService->sendBufferedEvents();
}

void AnalyticsLogic::replaceUserId(ReplaceUserIdCall call) {
  const std::string& from = call.prevUserName;
  const std::string& to = call.userName;
  const auto users = services_.stateManager->getProjectUsers();
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
  if (to == services_.stateManager->getActiveDeviceIdentifiers()->deviceIdentifier) {
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
  const std::optional<std::string> old = services_.stateManager->getActiveUser()->userId;
  if (const auto inTheWay = userOf(to)) {
    // Who is to be removed must not be active.
    if (old == to) services_.stateManager->activateUser(renamed);
    removeUsers({inTheWay});
  }
  services_.stateManager->replaceUserId(renamed, to);
  if (services_.projectService->getTrackingAvailable()) requestMissingBackendIds();
  const User& active = *services_.stateManager->getActiveUser();
  if (!active.isDefaultUser && services_.projectService->userCounting() && active.userId != old) {
    services_.userService->clearLocation(true);
  }
  sendDeviceInfo();
  generatePeopleEvent(false);
  services_.reportService->sendBufferedEvents();
  Logger::writeLog(PLRLogLevel::info,
                   [&] { return fmt::format("UserId: [{}] renamed to [{}]", from, to); });
}

void AnalyticsLogic::requestMissingBackendIds() {
  const auto identifiers = services_.stateManager->getActiveDeviceIdentifiers();
  if (!identifiers->pelorinoId || !identifiers->pelorinoIdTimestamp) {
    services_.configService->receiveUserBackendIds();
  }
}

void AnalyticsLogic::setCurrentLevel(std::int64_t currentLevel) {
  const User& user = *services_.stateManager->getActiveUser();
  if (user.level != currentLevel) {
    addCurrencyAccrual();
    services_.reportService->sendBufferedEvents();
    services_.levelResourceService->removeResourcesForActiveUser();
    services_.userService->resourceAggregation(false);
  }
  services_.userService->setLevel(currentLevel);
}

void AnalyticsLogic::setTrackingAvailability(bool value) {
  if (services_.projectService->getTrackingAvailable() != value) {
    value ? enableTracking() : disableTracking();
    return;
  }
  Logger::writeLog(PLRLogLevel::info, value ? "Tracking status is already Enable"
                                            : "Tracking status is already Disable");
  if (value) addTrackingStatus(true);
}

void AnalyticsLogic::enableTracking() {
  services_.projectService->setTrackingAvailable(true);
  addTrackingStatus(true);
  if (!started_) {  // The library was held back at its start.
    startSDK();
    return;
  }
  services_.reportService->sendBufferedEvents();
  startActivity();
  services_.configService->receiveSdkConfig();
  services_.configService->receiveUserBackendIds();
}

void AnalyticsLogic::disableTracking() {
  removeEventsAndResources();
  stopActivity();
  services_.timerService->stopTimers();  // They may run without activity.
  addTrackingStatus(false);              // Tracking is still on, so that this is stored and leaves.
  generatePeopleEvent(false);
  services_.reportService->sendBufferedEvents();
  services_.projectService->setTrackingAvailable(false);
  services_.stateManager->updateDeviceIdentifiers(std::nullopt, std::nullopt, std::nullopt);
}

void AnalyticsLogic::addTrackingStatus(bool trackingAllowed) {
  services_.eventsService->addEvent(Event(
      TrackingStatus{.timestamp = clock_.milliseconds(), .trackingAllowed = trackingAllowed}));
}

void AnalyticsLogic::removeUsers(const std::vector<std::shared_ptr<User>>& users) {
  if (users.empty()) return;
  Logger::writeLog(PLRLogLevel::debug, [&] {
    std::vector<std::string_view> names;
    for (const auto& user : users) {
      names.push_back(user->userId ? std::string_view(*user->userId) : std::string_view());
    }
    return fmt::format("Remove inactive users [{}]", fmt::join(names, ", "));
  });
  services_.userService->removeUsers(users);
  services_.eventsService->removeInactiveUserData(users);
  services_.currencyAccrualService->removeInactiveUserData(users);
  services_.levelResourceService->removeInactiveUserData(users);
  services_.reportService->removeInactiveUserData(users);
  services_.peopleService->removeInactiveUserData(users);
}

void AnalyticsLogic::removeEventsAndResources() {
  services_.eventsService->removeAllEvents();
  services_.reportService->removeAllReports();
  services_.levelResourceService->removeAllResources();
  services_.currencyAccrualService->removeAllResources();
}

}  // namespace pelorino
