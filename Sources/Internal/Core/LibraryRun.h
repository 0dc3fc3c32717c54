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

/// All that a start makes, each part by value, in the order in which it is built: what is further
/// down refers to what is further up.
///
/// Threads: the incomeQueue only.
class LibraryRun final : public Run {
 public:
  /// Opens the stored state. Throws when it can be neither read nor made.
  LibraryRun(std::unique_ptr<CoreFactory> coreFactory, const std::string& applicationKey,
             const std::optional<std::string>& userId, std::function<bool()> isEditorMode);

  /// Once.
  void start(const std::optional<PLRAnalyticsConfigurationLocal>& configuration);
  /// The end of the run. Once.
  void stop();

  [[nodiscard]] AnalyticsLogic& analyticsLogic() { return analyticsLogic_; }
  [[nodiscard]] MessagingLogic& messagingLogic() { return messagingLogic_; }
  [[nodiscard]] PeopleService& peopleService() { return serviceFactory_.peopleService; }
  [[nodiscard]] AntiCheatService& antiCheatService() { return serviceFactory_.antiCheatService; }

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
