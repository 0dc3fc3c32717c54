#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Project.h"
#include "Repositories.h"
#include "User.h"

namespace pelorino {

/// Finds the user that an identifier means, or makes one. Use one object for one decision.
///
/// Threads: the incomeQueue only.
/// Owns:    nothing: the project and the repositories are borrowed.
/// Errors:  a user that cannot be stored is returned, too; its `idKey` is -1.
class CoreHelper final {
 public:
  /// `setByDefault`: the identifier is the device's, not one from the host. `resetClouser` makes
  /// the backend's identifiers absent.
  CoreHelper(std::string userId, Project& project, bool setByDefault,
             ProjectRepository& projectRepository, UserRepository& userRepository,
             std::function<void()> resetClouser);

  /// Returns the user to activate. It may rename the current user or insert a new one: that depends
  /// on whether the project counts users. With `setByDefault` the current user stays.
  [[nodiscard]] std::shared_ptr<User> defineActiveUser();

  /// Returns the default user, who stands for the device.
  [[nodiscard]] std::shared_ptr<User> defineDefaultUser();

  /// Makes `user` the project's active one. A change resets the backend's identifiers.
  std::shared_ptr<User> activateUser(std::shared_ptr<User> user);

 private:
  std::shared_ptr<User> getCurrentUser();
  std::shared_ptr<User> getByAccountingType(const std::shared_ptr<User>& current);
  std::shared_ptr<User> findRequestedUser() const;
  std::shared_ptr<User> insertUser();
  void changeUserState(User& user);

  std::string userId_;
  Project& project_;
  bool setByDefault_;
  ProjectRepository& projectRepository_;
  UserRepository& userRepository_;
  std::function<void()> resetClouser_;
  std::vector<std::shared_ptr<User>> projectUsers_;
  std::shared_ptr<User> activeUser_;
};

}  // namespace pelorino
