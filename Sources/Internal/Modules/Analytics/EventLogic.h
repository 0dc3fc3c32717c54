#pragma once

#include "EventCalls.h"
#include "ProjectService.h"
#include "UserEvents.h"

namespace pelorino {

/// Calls that become one event each.
///
/// Threads: the incomeQueue only.
class EventLogic final {
 public:
  EventLogic(StateManager& stateManager, ProjectService& projectService, UserEvents& events)
      : stateManager_(stateManager), projectService_(projectService), events_(events) {}

  void perform(CustomEventCall call);
  void perform(SocialNetworkConnectCall call);
  void perform(SocialNetworkPostCall call);
  void perform(AdImpressionCall call);
  /// Takes one call for each project.
  void perform(ReferrerCall call);

 private:
  StateManager& stateManager_;
  ProjectService& projectService_;
  UserEvents& events_;
};

}  // namespace pelorino
