#include "SubscriptionRepository.h"

#include "JsonColumn.h"

namespace pelorino {
namespace {

using Entry = SQLiteContracts::SubscriptionEntry;

constexpr Column<SubscriptionInfo> table[] = {
    column<&SubscriptionInfo::idKey>(Entry::id),
    column<&SubscriptionInfo::projectId>(Entry::projectId),
    column<&SubscriptionInfo::products>(Entry::products),
    column<&SubscriptionInfo::restoredTransaction>(Entry::restoredTransaction),
    column<&SubscriptionInfo::alreadyRestored>(Entry::alreadyRestored),
    column<&SubscriptionInfo::productIsChanged>(Entry::productIsChanged),
    column<&SubscriptionInfo::alreadySendRestoreEvent>(Entry::alreadySendRestoreEvent),
};

}  // namespace

std::span<const Column<SubscriptionInfo>> SubscriptionColumns::columns() {
  return table;
}

template class CachedRepository<SubscriptionInfo, SubscriptionColumns>;

}  // namespace pelorino
