#include "StateManager.h"

#include <cmath>
#include <stdexcept>
#include <utility>

#include "Logger.h"
#include "SdkConstraints.h"

namespace pelorino {
namespace {

double roundedToFiveDecimals(double value) {
  return std::round(value * 100000) / 100000;
}

}  // namespace

StateManager::StateManager(DeviceManager& deviceManager, CoreManager& coreManager,
                           const SDKMigrationManager& migrationManager,
                           UserRepository& userRepository, const std::optional<std::string>& userId,
                           std::function<bool()> isEditorMode)
    : deviceManager_(deviceManager),
      coreManager_(coreManager),
      userRepository_(userRepository),
      isEditorMode_(std::move(isEditorMode)) {
  if (deviceManager_.sdkVersionIsChanged().value_or(false)) {
    Logger::writeLog(PLRLogLevel::debug, "SDK version updated");
  }
  activeProject_ = coreManager_.createOrActivateProject();
  // Every other row refers to the project.
  if (activeProject_->idKey == notStoredRowId)
    throw std::runtime_error("the project cannot be stored");
  deviceManager_.initializeDeviceId(*activeProject_);
  // Before the user is chosen: it may make another one the active one.
  if (!activeProject_->isMigrated) migrationManager.migrate(*activeProject_);
  resetClouser_ = [this](std::optional<std::int64_t> pelorinoId,
                         std::optional<std::int64_t> crossPlatformPelorinoId,
                         std::optional<std::int64_t> pelorinoIdTimestamp) {
    const auto identifiers = getActiveDeviceIdentifiers();
    identifiers->pelorinoId = pelorinoId;
    identifiers->crossPlatformPelorinoId = crossPlatformPelorinoId;
    identifiers->pelorinoIdTimestamp = pelorinoIdTimestamp;
    deviceManager_.updateDeviceIdentifiers(*identifiers);
  };
  coreManager_.onIndetifiersReset = resetClouser_;
  activeUser_ = chooseUser(userId);  // Last: it may reset the identifiers.
}

std::shared_ptr<User> StateManager::chooseUser(const std::optional<std::string>& userId) {
  if (userId && !userId->empty()) {
    return coreManager_.createOrActivateUser(*userId, *activeProject_, false);
  }
  const std::string device = getActiveDeviceIdentifiers()->deviceIdentifier;
  return userId ? coreManager_.createOrActivateDefaultUser(device, *activeProject_)
                : coreManager_.createOrActivateUser(device, *activeProject_, true);
}

std::shared_ptr<DeviceIdentifiers> StateManager::getActiveDeviceIdentifiers() {
  return deviceManager_.initializeDeviceId(*activeProject_);
}

std::vector<std::shared_ptr<User>> StateManager::getProjectUsers() const {
  return userRepository_.ofProject(activeProject_->idKey);
}

std::vector<std::shared_ptr<User>> StateManager::getInactiveProjectUsers() const {
  auto users = getProjectUsers();
  std::erase_if(users, [&](const auto& user) { return user->idKey == activeUser_->idKey; });
  return users;
}

void StateManager::activateUser(const std::string& userId) {
  activeUser_ = chooseUser(userId);
}

void StateManager::activateUser(const std::shared_ptr<User>& user) {
  coreManager_.activateUser(user, *activeProject_);
  activeUser_ = user;
}

void StateManager::replaceUserId(const std::shared_ptr<User>& user, const std::string& userId) {
  // The backend gave the identifiers to the old name.
  if (user->idKey == activeUser_->idKey) {
    activeUser_ = user;
    updateDeviceIdentifiers(std::nullopt, std::nullopt, std::nullopt);
  }
  user->previousUserId = user->userId;
  user->userId = userId;
  user->isDefaultUser = false;
  userRepository_.update(*user);
}

Identifiers StateManager::getIdentifiers(const User& user) {
  const auto device = getActiveDeviceIdentifiers();
  return {.deviceId = device->deviceIdentifier,
          .previousDeviceId = device->previousDeviceIdentifier,
          .userId = user.userId,
          .previousUserId = user.previousUserId,
          .pelorinoId = device->pelorinoId,
          .crossPlatformPelorinoId = device->crossPlatformPelorinoId,
          .pelorinoIdTimestamp = device->pelorinoIdTimestamp};
}

Versions StateManager::getVersion() const {
  Versions versions;
  versions.sdkVersion = SdkConstraints::sdkVersion();
  versions.sdkCodeVersion = SdkConstraints::sdkCodeVersion;
  if (!isEditorMode()) {
    const ApplicationData application = getAppData();
    versions.appVersion = application.applicationVersion;
    versions.appBuildVersion = application.applicationBuildVersion;
  }
  const Config& configuration = activeProject_->configuration;
  if (configuration.exclude) versions.excludeVersion = configuration.exclude->version;
  versions.sbsConfigVersion = configuration.sbsConfigVersion;
  return versions;
}

std::optional<DeviceInfo> StateManager::getDeviceInfo() const {
  const auto device = getDeviceData();
  if (!device) return std::nullopt;
  const IdentifierData identifiers = deviceManager_.getIdentifiersData();
  DeviceInfo info;
  info.osVersion = device->osVersion;
  info.os = device->osName;
  info.displayPpi = device->displayPpi;
  info.displayResolution = device->displayResolution;
  if (device->displayDiagonal)
    info.displayDiagonal = roundedToFiveDecimals(*device->displayDiagonal);
  info.manufacturer = device->manufacturer;
  info.model = device->model;
  info.timeZoneOffset = device->timeZoneOffset;
  info.rooted = device->isRooted ? 1 : 0;
  info.isLimitAdTrackingEnabled = !identifiers.idfa;
  info.idfv = identifiers.idfv;
  info.idfa = identifiers.idfa;
  info.uuid = identifiers.uuid;
  info.sandboxState = getAppData().sandboxState;
  return info;
}

void StateManager::updateDeviceIdentifiers(std::optional<std::int64_t> pelorinoId,
                                           std::optional<std::int64_t> crossPlatformPelorinoId,
                                           std::optional<std::int64_t> pelorinoIdTimestamp) {
  resetClouser_(pelorinoId, crossPlatformPelorinoId, pelorinoIdTimestamp);
}

}  // namespace pelorino
