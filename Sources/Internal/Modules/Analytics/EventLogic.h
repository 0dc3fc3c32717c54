#pragma once

#include "EventCalls.h"
#include "ProjectService.h"
#include "UserEvents.h"

namespace pelorino {

/// What the host reports, one event a call.
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
  /// Once for each project.
  void perform(ReferrerCall call);

 private:
  StateManager& stateManager_;
  ProjectService& projectService_;
  UserEvents& events_;
};

}  // namespace pelorino
