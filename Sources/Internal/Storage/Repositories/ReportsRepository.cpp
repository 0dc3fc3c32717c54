#include "ReportsRepository.h"

#include <utility>

#include "SQLiteContracts.h"

namespace pelorino {
namespace {

using Entry = SQLiteContracts::ReportEntry;

bool leavePackages(Report& /*report*/, const Cursor& /*cursor*/, int /*at*/) {
  return true;
}

std::optional<SQLiteValue> writePackages(const Report& report) {
  return report.stored();
}

constexpr Column columns[] = {
    column<&Report::idKey>(Entry::id),
    column<&Report::userId>(Entry::userId),
    column<Report, leavePackages, writePackages>(Entry::packagesJson),
    column<&Report::uuid>(Entry::uuid),
};

constexpr TableDescription table = describeOwnedTable<&Report::userId>(Entry::tableName, columns);

}  // namespace

ReportsRepository::ReportsRepository(std::shared_ptr<DatabaseProtocol> with)
    : UserRowsRepository(table, std::move(with)) {}

bool ReportsRepository::readPackages(Report& report) {
  if (report.hasPackages()) return true;
  bool isFound = false;
  const bool isRead = table_.database().query({.tableName = Entry::tableName,
                                               .projection = {std::string(Entry::packagesJson)},
                                               .selection = "id=?",
                                               .selectionArgs = {report.idKey}},
                                              [&](const Cursor& cursor) {
                                                report.packagesJson = cursor.text(0).value_or("");
                                                isFound = true;
                                              });
  return isRead && isFound;
}

}  // namespace pelorino
