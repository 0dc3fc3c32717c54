#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Config.h"
#include "CoreManager.h"
#include "DeviceManager.h"
#include "Identifiers.h"
#include "SessionEvents.h"

namespace pelorino {

/// Holds the project and the user that are active now; every service reads them from here.
///
/// Invariant: the active project's `activeUserId` is the row id of the active user, stored. A
/// change of the active user makes the backend's identifiers of the device absent.
///
/// Threads: the incomeQueue only.
class StateManager final {
 public:
  /// Finds or makes the project, the device identifiers and the active user. `userId`: absent keeps
  /// the user of last time, the empty text asks for the default user. Throws std::runtime_error
  /// when the project can be neither read nor stored.
  StateManager(DeviceManager& deviceManager, CoreManager& coreManager,
               UserRepository& userRepository, const std::optional<std::string>& userId,
               std::function<bool()> isEditorMode);

  [[nodiscard]] bool isEditorMode() const { return isEditorMode_(); }
  [[nodiscard]] const std::shared_ptr<Project>& getActiveProject() const { return activeProject_; }
  [[nodiscard]] const std::shared_ptr<User>& getActiveUser() const { return activeUser_; }
  /// The row of the active project, made or brought up to date when the platform names another
  /// device than the row.
  [[nodiscard]] std::shared_ptr<DeviceIdentifiers> getActiveDeviceIdentifiers();
  /// All users of the active project, in order of insertion.
  [[nodiscard]] std::vector<std::shared_ptr<User>> getProjectUsers() const;
  /// Users of the active project other than the active user.
  [[nodiscard]] std::vector<std::shared_ptr<User>> getInactiveProjectUsers() const;

  /// Makes the user of this identifier active; the empty text means the default user.
  void activateUser(const std::string& userId);
  /// Makes this user of the project active, whatever the accounting of the project.
  void activateUser(const std::shared_ptr<User>& user);
  void replaceUserId(const std::shared_ptr<User>& user, const std::string& userId);

  /// Stores an active user whose row the disk has refused. False when it still does: nobody would
  /// find what is stored for such a user.
  [[nodiscard]] bool ensureActiveUserIsStored() {
    return coreManager_.ensureStored(activeUser_, *activeProject_);
  }

  /// What travels beside a request for this user.
  [[nodiscard]] Identifiers getIdentifiers(const User& user);
  [[nodiscard]] Versions getVersion() const;
  [[nodiscard]] ApplicationData getAppData() const { return deviceManager_.getAppData(); }
  /// The event but for its time. Absent when the device data cannot be had in time.
  [[nodiscard]] std::optional<DeviceInfo> getDeviceInfo() const;
  [[nodiscard]] std::optional<DeviceData> getDeviceData() const {
    return deviceManager_.getDeviceData();
  }

  void updateDeviceIdentifiers(std::optional<std::int64_t> pelorinoId,
                               std::optional<std::int64_t> crossPlatformPelorinoId,
                               std::optional<std::int64_t> pelorinoIdTimestamp);

 private:
  std::shared_ptr<User> chooseUser(const std::optional<std::string>& userId);

  DeviceManager& deviceManager_;
  CoreManager& coreManager_;
  UserRepository& userRepository_;
  std::function<bool()> isEditorMode_;
  std::shared_ptr<Project> activeProject_;
  CoreManager::IdentifiersReset resetClouser_;  ///< Writes the backend's identifiers.
  std::shared_ptr<User> activeUser_;
};

}  // namespace pelorino
