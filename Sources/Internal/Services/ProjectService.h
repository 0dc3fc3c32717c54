#pragma once

#include <cstdint>
#include <memory>

#include "Config.h"
#include "ProjectRepository.h"
#include "StateManager.h"

namespace pelorino {

/// The record that is in force when `received` has come in after `stored`. The backend leaves out
/// exclusions and store products whose version the client has already told it.
[[nodiscard]] Config mergedConfig(const Config& stored, Config received);

/// Reads and changes the stored state of the application keys.
///
/// Threads: the incomeQueue only.
class ProjectService final {
 public:
  ProjectService(std::shared_ptr<StateManager> stateManager,
                 std::shared_ptr<ProjectRepository> projectRepository);

  /// Switches tracking for every project on the device, not only the active one.
  void setTrackingAvailable(bool available);
  [[nodiscard]] bool getTrackingAvailable() const;

  [[nodiscard]] bool userCounting() const;

  /// Limit of parameters of a custom event.
  [[nodiscard]] std::int64_t paramsCount() const;

  /// Puts a configuration from the backend in force, its exclusions included, and stores it.
  void applyConfig(const Config& received);

  /// True when `received` ends the accounts of single users.
  [[nodiscard]] bool checkIfNeedRemoveUsersData(const Config& received) const;

 private:
  std::shared_ptr<StateManager> stateManager_;
  std::shared_ptr<ProjectRepository> projectRepository_;
};

}  // namespace pelorino
