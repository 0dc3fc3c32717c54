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
#include "SDKMigrationManager.h"
#include "SessionEvents.h"

namespace pelorino {

/// Holds the active project and the active user. All services read them from here.
///
/// The active project's `activeUserId` is the row id of the active user, unless the disk has
/// refused that user's row. When the active user changes, the backend's identifiers become absent.
///
/// Threads: the incomeQueue only.
class StateManager final {
 public:
  /// Finds or makes the project, the device identifiers and the active user. Without a `userId` the
  /// last user stays active; the empty text means the default user. Throws std::runtime_error when
  /// the project can be neither read nor stored.
  StateManager(DeviceManager& deviceManager, CoreManager& coreManager,
               const SDKMigrationManager& migrationManager, UserRepository& userRepository,
               const std::optional<std::string>& userId, std::function<bool()> isEditorMode);

  [[nodiscard]] bool isEditorMode() const { return isEditorMode_(); }
  [[nodiscard]] const std::shared_ptr<Project>& getActiveProject() const { return activeProject_; }
  [[nodiscard]] const std::shared_ptr<User>& getActiveUser() const { return activeUser_; }
  /// The row of the active project. Inserts or updates it when the platform names another device;
  /// see DeviceManager::initializeDeviceId().
  [[nodiscard]] std::shared_ptr<DeviceIdentifiers> getActiveDeviceIdentifiers();
  /// All users of the active project, in order of insertion.
  [[nodiscard]] std::vector<std::shared_ptr<User>> getProjectUsers() const;
  /// Users of the active project other than the active user.
  [[nodiscard]] std::vector<std::shared_ptr<User>> getInactiveProjectUsers() const;

  /// Makes the user of this identifier active; the empty text means the default user.
  void activateUser(const std::string& userId);
  /// Makes this stored user active, whether or not the project counts users.
  void activateUser(const std::shared_ptr<User>& user);
  /// Renames the user, who is then no default user.
  void replaceUserId(const std::shared_ptr<User>& user, const std::string& userId);

  /// Inserts the active user's row if the disk has refused it before. False when it still does.
  /// Then store nothing for this user: the next start would not find it.
  [[nodiscard]] bool ensureActiveUserIsStored() {
    return coreManager_.ensureStored(activeUser_, *activeProject_);
  }

  /// The identifiers for the headers of a request about this user.
  [[nodiscard]] Identifiers getIdentifiers(const User& user);
  [[nodiscard]] Versions getVersion() const;
  [[nodiscard]] ApplicationData getAppData() const { return deviceManager_.getAppData(); }
  /// The event without its time. Absent when the device data does not come in time.
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
  CoreManager::IdentifiersReset resetClouser_;  ///< Stores the backend's identifiers.
  std::shared_ptr<User> activeUser_;
};

}  // namespace pelorino
