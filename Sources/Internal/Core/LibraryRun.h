#pragma once

#include <functional>
#include <optional>
#include <string>

#include "AnalyticsLogic.h"
#include "CoreFactory.h"
#include "CoreManager.h"
#include "DeviceManager.h"
#include "MessagingLogic.h"
#include "PLRAnalyticsConfigurationLocal.h"
#include "Run.h"
#include "ServiceFactory.h"
#include "StateManager.h"

namespace pelorino {

/// Owns everything that a start makes. The members are in the order in which they are built; later
/// ones refer to earlier ones.
///
/// Threads: the incomeQueue only, also for its destruction.
class LibraryRun final : public Run {
 public:
  /// Reads or makes the stored state. Throws when it can do neither.
  LibraryRun(std::unique_ptr<CoreFactory> coreFactory, const std::string& applicationKey,
             const std::optional<std::string>& userId, std::function<bool()> isEditorMode);

  /// Call it once.
  void start(const std::optional<PLRAnalyticsConfigurationLocal>& configuration);
  /// Ends the run. Call it once.
  void stop();

  [[nodiscard]] AnalyticsLogic& analyticsLogic() { return analyticsLogic_; }
  [[nodiscard]] MessagingLogic& messagingLogic() { return messagingLogic_; }
  [[nodiscard]] PeopleService& peopleService() { return serviceFactory_.peopleService; }
  [[nodiscard]] AntiCheatService& antiCheatService() { return serviceFactory_.anticheatService; }

 private:
  const std::unique_ptr<CoreFactory> coreFactory_;
  DeviceManager deviceManager_;
  CoreManager coreManager_;
  StateManager stateManager_;
  ServiceFactory serviceFactory_;
  AnalyticsLogic analyticsLogic_;
  MessagingLogic messagingLogic_;
};

}  // namespace pelorino
