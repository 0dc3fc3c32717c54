#include "Repositories.h"

namespace pelorino {

/// Stored as a number. An unknown number reads as `earned`.
template <>
struct SQLiteValueContertible<LevelResourceType> {
  static std::optional<SQLiteValue> stored(LevelResourceType field) {
    return static_cast<std::int64_t>(field);
  }
  static std::optional<LevelResourceType> from(const Cursor& cursor, int at) {
    const auto raw = cursor.integer(at);
    if (!raw) return std::nullopt;
    // The file may hold any number; description() has no text for an unknown one.
    const bool isKnown = *raw >= 0 && *raw <= static_cast<int>(LevelResourceType::spent);
    return isKnown ? static_cast<LevelResourceType>(*raw) : LevelResourceType::earned;
  }
};

/// Stored as a number. An unknown number reads as `earned`.
template <>
struct SQLiteValueContertible<PLRAccrualType> {
  static std::optional<SQLiteValue> stored(PLRAccrualType field) {
    return static_cast<std::int64_t>(field);
  }
  static std::optional<PLRAccrualType> from(const Cursor& cursor, int at) {
    const auto raw = cursor.integer(at);
    if (!raw) return std::nullopt;
    return *raw == static_cast<int>(PLRAccrualType::bought) ? PLRAccrualType::bought
                                                            : PLRAccrualType::earned;
  }
};

namespace {

constexpr Column levelResources[] = {
    column<&LevelResource::userId>(
        "userId", "INTEGER CONSTRAINT levelResource_users_id_fk REFERENCES users(id)"),
    column<&LevelResource::type>("type", "INTEGER NOT NULL"),
    column<&LevelResource::name>("name", "TEXT"),
    column<&LevelResource::amount>("amount", "INTEGER NOT NULL"),
};

constexpr Column currencyAccrualResources[] = {
    column<&CurrencyAccrualResource::userId>(
        "userId", "INTEGER CONSTRAINT currencyAccrualResources_users_id_fk REFERENCES users(id)"),
    column<&CurrencyAccrualResource::type>("type", "INTEGER NOT NULL"),
    column<&CurrencyAccrualResource::name>("name", "TEXT"),
    column<&CurrencyAccrualResource::amount>("amount", "INTEGER NOT NULL"),
    column<&CurrencyAccrualResource::source>("source", "TEXT"),
    column<&CurrencyAccrualResource::timestamp>("timestamp", "INTEGER NOT NULL"),
};

}  // namespace

constinit const TableDescription LevelResourceEntry::table =
    describeOwnedTable<&LevelResource::userId>("levelResource", levelResources);
constinit const TableDescription CurrencyAccrualResourcesEntry::table =
    describeOwnedTable<&CurrencyAccrualResource::userId>("currencyAccrualResources",
                                                         currencyAccrualResources);

}  // namespace pelorino
