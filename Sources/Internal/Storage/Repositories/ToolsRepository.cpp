#include "ToolsRepository.h"

#include <utility>

#include "SQLiteContracts.h"

namespace pelorino {

template <>
struct SQLiteValueContertible<PeopleProperties> {
  static std::optional<SQLiteValue> stored(const PeopleProperties& field) {
    return peopleJson(field);
  }
  static std::optional<PeopleProperties> from(const Cursor& cursor, int at) {
    const auto text = cursor.text(at);
    if (!text) return std::nullopt;
    return peopleProperties(*text);
  }
};

namespace {

using Entry = SQLiteContracts::SdkToolsEntry;

constexpr Column columns[] = {
    column<&SdkTools::idKey>(Entry::id),
    column<&SdkTools::properties>(Entry::metadata),
};

constexpr TableDescription table = describeTable<SdkTools>(Entry::tableName, columns);

}  // namespace

ToolsRepository::ToolsRepository(std::shared_ptr<DatabaseProtocol> with)
    : CachedRepository(table, std::move(with)) {}

}  // namespace pelorino
