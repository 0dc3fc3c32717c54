#pragma once

#include "AccrualLogic.h"
#include "ActivityService.h"
#include "TimerService.h"
#include "UserEvents.h"

namespace pelorino {

/// Starts and stops activity when the application enters and leaves the foreground, and makes the
/// events of sessions.
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

  /// Begins a session, or continues the last one, and starts the timers. Does nothing while
  /// tracking is off.
  void startActivity();
  /// Makes the last events, sends everything stored, and stops the timers.
  void stopActivity();

  /// Sends a sign of life without storing it. Does nothing when tracking is off or the event is
  /// excluded.
  void sendAlive();
  /// Stores an event about the device. Does nothing when it is excluded or the device data is
  /// missing.
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
