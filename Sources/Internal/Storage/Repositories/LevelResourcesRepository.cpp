#include "LevelResourcesRepository.h"

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

constexpr Column<LevelResource> table[] = {
    column<&LevelResource::idKey>(Entry::id),      column<&LevelResource::userId>(Entry::userId),
    column<&LevelResource::type>(Entry::type),     column<&LevelResource::name>(Entry::name),
    column<&LevelResource::amount>(Entry::amount),
};

}  // namespace

std::span<const Column<LevelResource>> LevelResourcesColumns::columns() {
  return table;
}

template class CachedRepository<LevelResource, LevelResourcesColumns>;

}  // namespace pelorino
