#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "Clock.h"
#include "Project.h"
#include "Repositories.h"
#include "User.h"

namespace pelorino {

/// Finds or makes the project of the application key, and the user that an identifier means.
///
/// Threads: the incomeQueue only.
/// Errors:  what cannot be stored is returned, too; its `idKey` is -1.
class CoreManager final {
 public:
  /// New values of pelorinoId, crossPlatformPelorinoId and pelorinoIdTimestamp.
  using IdentifiersReset = std::function<void(
      std::optional<std::int64_t>, std::optional<std::int64_t>, std::optional<std::int64_t>)>;

  CoreManager(std::string applicationKey, ProjectRepository& projectRepository,
              UserRepository& userRepository, const Clock& clock);

  /// Called with three absent values when the active user changes: the backend gave the identifiers
  /// to the old user.
  IdentifiersReset onIndetifiersReset;

  /// Returns the stored project, or inserts a new one. Without a configuration from the backend it
  /// has the default one, whose `serverTime` is the time of the process's first start.
  [[nodiscard]] std::shared_ptr<Project> createOrActivateProject();

  /// Finds or makes the user of this identifier and makes it the active one. `setByDefault`: the
  /// identifier is the device's, not one from the host; then the last active user is kept.
  [[nodiscard]] std::shared_ptr<User> createOrActivateUser(const std::string& userId,
                                                           Project& project, bool setByDefault);

  /// Finds or makes the default user and makes it the active one. `userId` is the device's
  /// identifier.
  [[nodiscard]] std::shared_ptr<User> createOrActivateDefaultUser(const std::string& userId,
                                                                  Project& project);

  /// Makes a stored user of the project the active one.
  void activateUser(const std::shared_ptr<User>& user, Project& project);

  /// Inserts a row for the user if there is none, and then makes the user the project's active one.
  /// False when the row cannot be inserted.
  [[nodiscard]] bool ensureStored(const std::shared_ptr<User>& user, Project& project);

 private:
  std::function<void()> resetToAbsent() const;

  std::string applicationKey_;
  ProjectRepository& projectRepository_;
  UserRepository& userRepository_;
  const Clock& clock_;
};

}  // namespace pelorino
