#include "TutorialRepository.h"

#include <utility>

#include "SQLiteContracts.h"

namespace pelorino {
namespace {

using Entry = SQLiteContracts::TutorialMarkEntry;

constexpr Column columns[] = {
    column<&TutorialMark::idKey>(Entry::id),
    column<&TutorialMark::userId>(Entry::userId),
    column<&TutorialMark::step>(Entry::step),
};

constexpr TableDescription table =
    describeOwnedTable<&TutorialMark::userId>(Entry::tableName, columns);

}  // namespace

TutorialRepository::TutorialRepository(std::shared_ptr<DatabaseProtocol> with)
    : UserRowsRepository(table, std::move(with)) {}

}  // namespace pelorino
