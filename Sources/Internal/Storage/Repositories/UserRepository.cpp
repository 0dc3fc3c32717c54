#include "UserRepository.h"

namespace pelorino {
namespace {

using Entry = SQLiteContracts::UserEntry;

constexpr Column<User> table[] = {
    column<&User::idKey>(Entry::id),
    column<&User::projectId>(Entry::projectId),
    column<&User::level>(Entry::level),
    column<&User::sessionId>(Entry::sessionId),
    column<&User::userId>(Entry::userId),
    column<&User::previousUserId>(Entry::previousUserId),
    column<&User::lastForegroundTime>(Entry::lastForegroundTime),
    column<&User::lastBackgroundTime>(Entry::lastBackgroundTime),
    column<&User::isDefaultUser>(Entry::isDefaultUser),
    column<&User::isResourceAggregationEnable>(Entry::isResourceAggregationEnable),
};

}  // namespace

std::span<const Column<User>> UserColumns::columns() {
  return table;
}

template class CachedRepository<User, UserColumns>;

}  // namespace pelorino
