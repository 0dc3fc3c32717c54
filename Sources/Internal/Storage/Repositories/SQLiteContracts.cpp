#include "SQLiteContracts.h"

#include <algorithm>

#include "Repositories.h"

namespace pelorino {
namespace {

using Step = Schema::Step;

void append(std::string& sql, const Column& column) {
  sql.append(column.name).append(" ").append(column.definition);
}

/// The statement as a new file runs it: without columns that a later version adds. Its exact text
/// is kept in the file.
Step create(const TableDescription& table) {
  std::string sql = "CREATE TABLE IF NOT EXISTS ";
  sql.append(table.name).append(" (\n    ").append(BaseEntry::id);
  sql.append(" INTEGER NOT NULL PRIMARY KEY AUTOINCREMENT");
  for (const Column& column : table.columns) {
    if (column.addingVersion == 0) append(sql.append(",\n    "), column);
  }
  if (!table.constraint.empty()) sql.append(",\n    ").append(table.constraint);
  return {sql.append("\n);")};
}

/// The statement that adds the column of this version to an older table. There must be exactly one.
Step update(const TableDescription& table, std::int64_t version) {
  const Column& column = *std::ranges::find(table.columns, version, &Column::addingVersion);
  std::string sql = "ALTER TABLE ";
  append(sql.append(table.name).append(" ADD COLUMN "), column);
  return {sql.append(";"), table.name, column.name};
}

}  // namespace

Schema SQLiteContracts::schema() {
  const Step createTableProjects = create(ProjectEntry::table);
  const Step createTableUsers = create(UserEntry::table);
  const Step createTableEvents = create(EventEntry::table);
  const Step createTableReports = create(ReportEntry::table);
  const Step createTableLevelResources = create(LevelResourceEntry::table);
  const Step createTableCurrencyAccrualResources = create(CurrencyAccrualResourcesEntry::table);
  const Step createTableDeviceIdentifiers = create(DeviceIdentifiersEntry::table);
  const Step createTableRealPaymentMarks = create(RealPaymentMarkEntry::table);
  const Step createTableTutorialMarks = create(TutorialMarkEntry::table);
  const Step createPeopleCardEntry = create(PeopleCardEntry::table);
  const Step createTableMessagingCategory = create(MessagingCategoryEntry::table);
  const Step createTableSdkTools = create(SdkToolsEntry::table);
  const Step createTableSubscriptions = create(SubscriptionEntry::table);
  const Step updateTableDeviceIdentifiers = update(DeviceIdentifiersEntry::table, 1);

  // map[0] makes the first tables; map[1] is what version 1 added. The lists are frozen: files of
  // each version exist.
  return {
      .version = schemeVersion,
      .map = {{createTableProjects, createTableUsers, createTableEvents, createTableReports,
               createTableLevelResources, createTableCurrencyAccrualResources,
               createTableDeviceIdentifiers, createTableRealPaymentMarks, createTableTutorialMarks,
               createPeopleCardEntry, createTableMessagingCategory, createTableSdkTools},
              {createTableSubscriptions, updateTableDeviceIdentifiers}}};
}

}  // namespace pelorino
