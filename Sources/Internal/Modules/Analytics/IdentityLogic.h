#pragma once

#include <cstdint>
#include <string>

#include "AccrualLogic.h"
#include "ActivityLogic.h"
#include "ConfigService.h"
#include "IdentityCalls.h"
#include "LevelResourceService.h"
#include "ReportService.h"
#include "UserData.h"
#include "UserEvents.h"

namespace pelorino {

/// Answers and changes who is playing, and at which level.
///
/// Threads: the incomeQueue only.
class IdentityLogic final {
 public:
  IdentityLogic(StateManager& stateManager, ProjectService& projectService,
                UserService& userService, LevelResourceService& levelResourceService,
                ConfigService& configService, ReportService& reportService, UserData& userData,
                AccrualLogic& accruals, ActivityLogic& activity, UserEvents& events)
      : stateManager_(stateManager),
        projectService_(projectService),
        userService_(userService),
        levelResourceService_(levelResourceService),
        configService_(configService),
        reportService_(reportService),
        userData_(userData),
        accruals_(accruals),
        activity_(activity),
        events_(events) {}

  [[nodiscard]] std::string answer(DeviceIdQuery query);
  [[nodiscard]] std::string answer(UserIdQuery query);
  [[nodiscard]] std::int64_t answer(CurrentLevelQuery query);

  void perform(const SetUserIdCall& call);
  /// Renames a user. Another user who already has the new name is removed.
  void perform(const ReplaceUserIdCall& call);
  void perform(SetCurrentLevelCall call);

  /// Asks the backend for the identifiers of the device and the active user, if they are missing.
  void requestMissingBackendIds();

 private:
  void switchUser(const std::string& userId);

  StateManager& stateManager_;
  ProjectService& projectService_;
  UserService& userService_;
  LevelResourceService& levelResourceService_;
  ConfigService& configService_;
  ReportService& reportService_;
  UserData& userData_;
  AccrualLogic& accruals_;
  ActivityLogic& activity_;
  UserEvents& events_;
};

}  // namespace pelorino
