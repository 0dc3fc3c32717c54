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
class CoreManager final {
 public:
  /// New values of pelorinoId, crossPlatformPelorinoId and pelorinoIdTimestamp.
  using IdentifiersReset = std::function<void(
      std::optional<std::int64_t>, std::optional<std::int64_t>, std::optional<std::int64_t>)>;

  CoreManager(std::string applicationKey, ProjectRepository& projectRepository,
              UserRepository& userRepository, const Clock& clock);

  /// Called with three absent values when the active user changes: the backend's identifiers
  /// belong to the user before.
  IdentifiersReset onIndetifiersReset;

  /// A project without a configuration of the backend has the default one, as of now.
  [[nodiscard]] std::shared_ptr<Project> createOrActivateProject();

  [[nodiscard]] std::shared_ptr<User> createOrActivateUser(const std::string& userId,
                                                           Project& project, bool setByDefault);

  [[nodiscard]] std::shared_ptr<User> createOrActivateDefaultUser(const std::string& userId,
                                                                  Project& project);

  /// Makes a stored user of the project the active one.
  void activateUser(const std::shared_ptr<User>& user, Project& project);

  /// False when the user has no row and none can be made. One that is made now makes the user the
  /// project's active one.
  [[nodiscard]] bool ensureStored(const std::shared_ptr<User>& user, Project& project);

 private:
  std::function<void()> resetToAbsent() const;

  std::string applicationKey_;
  ProjectRepository& projectRepository_;
  UserRepository& userRepository_;
  const Clock& clock_;
};

}  // namespace pelorino
