#include "ToolsRepository.h"

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

constexpr Column<SdkTools> table[] = {
    column<&SdkTools::idKey>(Entry::id),
    column<&SdkTools::properties>(Entry::metadata),
};

}  // namespace

std::span<const Column<SdkTools>> ToolsColumns::columns() {
  return table;
}

template class CachedRepository<SdkTools, ToolsColumns>;

}  // namespace pelorino
