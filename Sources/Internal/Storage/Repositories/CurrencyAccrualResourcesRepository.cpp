#include "CurrencyAccrualResourcesRepository.h"

#include <utility>

#include "SQLiteContracts.h"

namespace pelorino {

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

using Entry = SQLiteContracts::CurrencyAccrualResourcesEntry;

constexpr Column columns[] = {
    column<&CurrencyAccrualResource::idKey>(Entry::id),
    column<&CurrencyAccrualResource::userId>(Entry::userId),
    column<&CurrencyAccrualResource::type>(Entry::type),
    column<&CurrencyAccrualResource::name>(Entry::name),
    column<&CurrencyAccrualResource::amount>(Entry::amount),
    column<&CurrencyAccrualResource::source>(Entry::source),
    column<&CurrencyAccrualResource::timestamp>(Entry::timestamp),
};

constexpr TableDescription table =
    describeOwnedTable<&CurrencyAccrualResource::userId>(Entry::tableName, columns);

}  // namespace

CurrencyAccrualResourcesRepository::CurrencyAccrualResourcesRepository(
    std::shared_ptr<DatabaseProtocol> with)
    : UserRowsRepository(table, std::move(with)) {}

}  // namespace pelorino
