#include "MessagingCategoryRepository.h"

#include <utility>

#include "JsonColumn.h"
#include "SQLiteContracts.h"

namespace pelorino {
namespace {

using Entry = SQLiteContracts::MessagingCategoryEntry;

constexpr Column columns[] = {
    column<&MessagingCategory::idKey>(Entry::id),
    column<&MessagingCategory::id>(Entry::identifier),
    column<&MessagingCategory::buttons>(Entry::buttons),
};

constexpr TableDescription table = describeTable<MessagingCategory>(Entry::tableName, columns);

}  // namespace

MessagingCategoryRepository::MessagingCategoryRepository(std::shared_ptr<DatabaseProtocol> with)
    : CachedRepository(table, std::move(with)) {}

}  // namespace pelorino
