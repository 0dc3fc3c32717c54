#include "EventRepository.h"

#include <utility>

#include "SQLiteContracts.h"

namespace pelorino {
namespace {

using Entry = SQLiteContracts::EventEntry;

constexpr Column columns[] = {
    column<&EventObject::idKey>(Entry::id),
    column<&EventObject::code>(Entry::code),
    column<&EventObject::userId>(Entry::userId),
    column<&EventObject::json>(Entry::eventJson),
};

constexpr TableDescription table =
    describeOwnedTable<&EventObject::userId>(Entry::tableName, columns);

}  // namespace

EventRepository::EventRepository(std::shared_ptr<DatabaseProtocol> with)
    : UserRowsRepository(table, std::move(with)) {}

}  // namespace pelorino
