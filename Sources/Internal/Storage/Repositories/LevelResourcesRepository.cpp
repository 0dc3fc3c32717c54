#include "LevelResourcesRepository.h"

#include <utility>

#include "SQLiteContracts.h"

namespace pelorino {

template <>
struct SQLiteValueContertible<LevelResourceType> {
  static std::optional<SQLiteValue> stored(LevelResourceType field) {
    return static_cast<std::int64_t>(field);
  }
  static std::optional<LevelResourceType> from(const Cursor& cursor, int at) {
    const auto raw = cursor.integer(at);
    if (!raw) return std::nullopt;
    const bool isKnown = *raw >= 0 && *raw <= static_cast<int>(LevelResourceType::spent);
    return isKnown ? static_cast<LevelResourceType>(*raw) : LevelResourceType::earned;
  }
};

namespace {

using Entry = SQLiteContracts::LevelResourceEntry;

constexpr Column columns[] = {
    column<&LevelResource::idKey>(Entry::id),      column<&LevelResource::userId>(Entry::userId),
    column<&LevelResource::type>(Entry::type),     column<&LevelResource::name>(Entry::name),
    column<&LevelResource::amount>(Entry::amount),
};

constexpr TableDescription table =
    describeOwnedTable<&LevelResource::userId>(Entry::tableName, columns);

}  // namespace

LevelResourcesRepository::LevelResourcesRepository(std::shared_ptr<DatabaseProtocol> with)
    : UserRowsRepository(table, std::move(with)) {}

}  // namespace pelorino
