#pragma once

#include "AccrualLogic.h"
#include "ActivityService.h"
#include "TimerService.h"
#include "UserEvents.h"

namespace pelorino {

/// The application's stays in the foreground: sessions, and what is told of them.
///
/// Threads: the incomeQueue only.
class ActivityLogic final {
 public:
  ActivityLogic(StateManager& stateManager, ProjectService& projectService,
                ActivityService& activityService, TimerService& timerService,
                ReportService& reportService, AccrualLogic& accruals, UserEvents& events)
      : stateManager_(stateManager),
        projectService_(projectService),
        activityService_(activityService),
        timerService_(timerService),
        reportService_(reportService),
        accruals_(accruals),
        events_(events) {}

  /// Opens a session, or goes on with the last one, and starts the timers. Not with tracking off.
  void startActivity();
  /// Stores and sends what is to be told, and stops the timers.
  void stopActivity();

  void sendAlive();
  void sendDeviceInfo();

 private:
  void sendUserEngagement();

  StateManager& stateManager_;
  ProjectService& projectService_;
  ActivityService& activityService_;
  TimerService& timerService_;
  ReportService& reportService_;
  AccrualLogic& accruals_;
  UserEvents& events_;
};

}  // namespace pelorino
