#pragma once

#include <memory>
#include <vector>

#include "CurrencyAccrualService.h"
#include "EventsService.h"
#include "LevelResourceService.h"
#include "PeopleService.h"
#include "ReportService.h"
#include "UserService.h"

namespace pelorino {

/// Removes the stored data of users. If you add a table whose rows belong to a user, delete its
/// rows here, too.
///
/// Threads: the incomeQueue only.
class UserData final {
 public:
  UserData(UserService& userService, EventsService& eventsService,
           CurrencyAccrualService& currencyAccrualService,
           LevelResourceService& levelResourceService, ReportService& reportService,
           PeopleService& peopleService)
      : userService_(userService),
        eventsService_(eventsService),
        currencyAccrualService_(currencyAccrualService),
        levelResourceService_(levelResourceService),
        reportService_(reportService),
        peopleService_(peopleService) {}

  /// Deletes the users and everything that belongs to them, except their tutorial marks.
  void removeUsers(const std::vector<std::shared_ptr<User>>& users);

  /// Deletes everything that has not been sent, of all users.
  void removeEventsAndResources();

 private:
  UserService& userService_;
  EventsService& eventsService_;
  CurrencyAccrualService& currencyAccrualService_;
  LevelResourceService& levelResourceService_;
  ReportService& reportService_;
  PeopleService& peopleService_;
};

}  // namespace pelorino
