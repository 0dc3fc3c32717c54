#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Project.h"
#include "Repositories.h"
#include "User.h"

namespace pelorino {

/// Decides which stored user an identifier means, and creates what is missing. Made for one
/// decision and dropped after it.
///
/// Threads: the incomeQueue only. The repositories outlive it.
class CoreHelper final {
 public:
  /// `setByDefault`: the identifier is the device's, not one from the host.
  CoreHelper(std::string userId, Project& project, bool setByDefault,
             ProjectRepository& projectRepository, UserRepository& userRepository,
             std::function<void()> resetClouser);

  /// The user that becomes active for an identifier; it takes over or makes a row where the
  /// accounting of the project says so.
  [[nodiscard]] std::shared_ptr<User> defineActiveUser();

  /// The user who stands for the device, for a host that names none on purpose.
  [[nodiscard]] std::shared_ptr<User> defineDefaultUser();

  /// Makes `user` the project's active one; a change resets the backend identifiers.
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
