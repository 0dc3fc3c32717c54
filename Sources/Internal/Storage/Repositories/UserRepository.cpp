#include "UserRepository.h"

#include <utility>

#include "SQLiteContracts.h"

namespace pelorino {
namespace {

using Entry = SQLiteContracts::UserEntry;

constexpr Column columns[] = {
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

constexpr TableDescription table = describeOwnedTable<&User::projectId>(Entry::tableName, columns);

}  // namespace

UserRepository::UserRepository(std::shared_ptr<DatabaseProtocol> with)
    : ProjectRowsRepository(table, std::move(with)) {}

}  // namespace pelorino
