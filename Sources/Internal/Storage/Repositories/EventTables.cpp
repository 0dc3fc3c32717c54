#include "Repositories.h"

namespace pelorino {
namespace {

constexpr Column events[] = {
    column<&EventObject::code>("code", "TEXT"),
    column<&EventObject::userId>("userId",
                                 "INTEGER CONSTRAINT events_users_id_fk REFERENCES users(id)"),
    column<&EventObject::json>("eventJson", "TEXT"),
};

constexpr std::string_view packagesColumn = "packagesJson";

/// Skips the packages: many reports may wait, and ReportsRepository::readPackages() reads them one
/// by one.
bool leavePackages(Report& /*report*/, const Cursor& /*cursor*/, int /*at*/) {
  return true;
}

std::optional<SQLiteValue> writePackages(const Report& report) {
  return report.stored();
}

constexpr Column reports[] = {
    column<&Report::userId>("userId",
                            "INTEGER CONSTRAINT reports_users_id_fk REFERENCES users(id)"),
    column<Report, leavePackages, writePackages>(packagesColumn, "TEXT"),
    column<&Report::uuid>("uuid", "TEXT DEFAULT '{}' NOT NULL"),
};

constexpr Column realPaymentMarks[] = {
    column<&RealPaymentMark::projectId>(
        "projectId", "INTEGER CONSTRAINT realPaymentMarks_projects_id_fk REFERENCES projects(id)"),
    column<&RealPaymentMark::orderId>("orderId", "TEXT"),
};

constexpr Column tutorialMarks[] = {
    column<&TutorialMark::userId>(
        "userId", "INTEGER CONSTRAINT tutorialMarkEntry_users_id_fk REFERENCES users(id)"),
    column<&TutorialMark::step>("step", "INTEGER"),
};

}  // namespace

constinit const TableDescription EventEntry::table =
    describeOwnedTable<&EventObject::userId>("events", events);
constinit const TableDescription ReportEntry::table =
    describeOwnedTable<&Report::userId>("reports", reports);
constinit const TableDescription RealPaymentMarkEntry::table =
    describeOwnedTable<&RealPaymentMark::projectId>("realPaymentMarks", realPaymentMarks);
constinit const TableDescription TutorialMarkEntry::table =
    describeOwnedTable<&TutorialMark::userId>("tutorialMarkEntry", tutorialMarks);

bool ReportsRepository::readPackages(Report& report) {
  if (report.hasPackages()) return true;
  bool isFound = false;
  const bool isRead = table_.database().query({.tableName = ReportEntry::table.name,
                                               .projection = {std::string(packagesColumn)},
                                               .selection = "id=?",
                                               .selectionArgs = {report.idKey}},
                                              [&](const Cursor& cursor) {
                                                report.packagesJson = cursor.text(0).value_or("");
                                                isFound = true;
                                              });
  return isRead && isFound;
}

}  // namespace pelorino
