#include "SubscriptionRepository.h"

#include <utility>

#include "JsonColumn.h"
#include "SQLiteContracts.h"

namespace pelorino {
namespace {

using Entry = SQLiteContracts::SubscriptionEntry;

constexpr Column columns[] = {
    column<&SubscriptionInfo::idKey>(Entry::id),
    column<&SubscriptionInfo::projectId>(Entry::projectId),
    column<&SubscriptionInfo::products>(Entry::products),
    column<&SubscriptionInfo::restoredTransaction>(Entry::restoredTransaction),
    column<&SubscriptionInfo::alreadyRestored>(Entry::alreadyRestored),
    column<&SubscriptionInfo::productIsChanged>(Entry::productIsChanged),
    column<&SubscriptionInfo::alreadySendRestoreEvent>(Entry::alreadySendRestoreEvent),
};

constexpr TableDescription table =
    describeOwnedTable<&SubscriptionInfo::projectId>(Entry::tableName, columns);

}  // namespace

SubscriptionRepository::SubscriptionRepository(std::shared_ptr<DatabaseProtocol> with)
    : ProjectRowsRepository(table, std::move(with)) {}

}  // namespace pelorino
