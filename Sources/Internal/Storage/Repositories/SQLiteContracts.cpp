#include "SQLiteContracts.h"

#include <initializer_list>

#include "Repositories.h"

namespace pelorino {
namespace {

using Tables = std::initializer_list<const TableDescription*>;

void append(std::string& sql, const Column& column) {
  sql.append(column.name).append(" ").append(column.definition);
}

/// One line for each column, the row id first.
std::string createTable(const TableDescription& table) {
  std::string sql = "CREATE TABLE IF NOT EXISTS ";
  sql.append(table.name).append(" (\n    ").append(BaseEntry::id);
  sql.append(" INTEGER NOT NULL PRIMARY KEY AUTOINCREMENT");
  for (const Column& column : table.columns) {
    if (column.addingVersion == 0) append(sql.append(",\n    "), column);
  }
  if (!table.constraint.empty()) sql.append(",\n    ").append(table.constraint);
  return sql.append("\n);");
}

std::string updateTable(const TableDescription& table, const Column& column) {
  std::string sql = "ALTER TABLE ";
  append(sql.append(table.name).append(" ADD COLUMN "), column);
  return sql.append(";");
}

/// What a version brought: new tables, and columns of earlier ones.
std::vector<Schema::Step> steps(std::int64_t version, Tables created, Tables updated = {}) {
  std::vector<Schema::Step> steps;
  for (const auto* table : created) steps.push_back({createTable(*table)});
  for (const auto* table : updated) {
    for (const Column& column : table->columns) {
      if (column.addingVersion != version) continue;
      steps.push_back({updateTable(*table, column), table->name, column.name});
    }
  }
  return steps;
}

}  // namespace

Schema SQLiteContracts::schema() {
  return {.version = schemeVersion,
          .map = {steps(0, {&ProjectEntry::table, &UserEntry::table, &EventEntry::table,
                            &ReportEntry::table, &LevelResourceEntry::table,
                            &CurrencyAccrualResourcesEntry::table, &DeviceIdentifiersEntry::table,
                            &RealPaymentMarkEntry::table, &TutorialMarkEntry::table,
                            &PeopleCardEntry::table, &MessagingCategoryEntry::table,
                            &SdkToolsEntry::table}),
                  steps(1, {&SubscriptionEntry::table}, {&DeviceIdentifiersEntry::table})}};
}

}  // namespace pelorino
