#include "ReportsRepository.h"

namespace pelorino {
namespace {

using Entry = SQLiteContracts::ReportEntry;

bool readPackages(Report& report, const Cursor& cursor, int at) {
  report.packagesJson = cursor.text(at);
  return true;
}

std::optional<SQLiteValue> writePackages(const Report& report) {
  return report.stored();
}

constexpr Column<Report> table[] = {
    column<&Report::idKey>(Entry::id),
    column<&Report::userId>(Entry::userId),
    {Entry::packagesJson, readPackages, writePackages},
    column<&Report::uuid>(Entry::uuid),
};

}  // namespace

std::span<const Column<Report>> ReportsColumns::columns() {
  return table;
}

template class CachedRepository<Report, ReportsColumns>;

}  // namespace pelorino
