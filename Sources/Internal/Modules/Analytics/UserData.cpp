#include "UserData.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <string_view>

#include "Logger.h"

namespace pelorino {

void UserData::removeUsers(const std::vector<std::shared_ptr<User>>& users) {
  if (users.empty()) return;
  Logger::writeLog(PLRLogLevel::debug, [&] {
    std::vector<std::string_view> names;
    for (const auto& user : users) {
      names.push_back(user->userId ? std::string_view(*user->userId) : std::string_view());
    }
    return fmt::format("Remove inactive users [{}]", fmt::join(names, ", "));
  });
  std::vector<RowId> ids;
  for (const auto& user : users) ids.push_back(user->idKey);
  userService_.removeUsers(users);
  eventsService_.removeInactiveUserData(ids);
  currencyAccrualService_.removeInactiveUserData(ids);
  levelResourceService_.removeInactiveUserData(ids);
  reportService_.removeInactiveUserData(ids);
  peopleService_.removeInactiveUserData(ids);
}

void UserData::removeEventsAndResources() {
  eventsService_.removeAllEvents();
  reportService_.removeAllReports();
  levelResourceService_.removeAllResources();
  currencyAccrualService_.removeAllResources();
}

}  // namespace pelorino
