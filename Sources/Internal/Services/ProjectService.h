#pragma once

#include <cstdint>
#include <memory>

#include "ProjectRepository.h"
#include "StateManager.h"

namespace pelorino {

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

  /// Limit of parameters of a custom event.
  [[nodiscard]] std::int64_t paramsCount() const;

 private:
  std::shared_ptr<StateManager> stateManager_;
  std::shared_ptr<ProjectRepository> projectRepository_;
};

}  // namespace pelorino
