#include "Tables.h"

#include <sqlite3.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>

namespace pelorino {
namespace {

constexpr const char* names[] = {
    "projects",
    "users",
    "events",
    "reports",
    "levelResource",
    "currencyAccrualResources",
    "peopleCards",
    "realPaymentMarks",
    "tutorialMarkEntry",
    "messagingCategory",
};

int addRow(void* table, int count, char** values, char**) {
  Row row;
  for (int i = 0; i < count; ++i) row.push_back(values[i] ? Cell(values[i]) : Cell());
  static_cast<Tables::Table*>(table)->emplace(std::stoll(*row[0]), row);
  return 0;
}

}  // namespace

std::size_t placeOf(const TableDescription& table, std::string_view column) {
  const auto found = std::ranges::find(table.columns, column, &Column::name);
  if (found == table.columns.end()) throw std::logic_error("no column " + std::string(column));
  return static_cast<std::size_t>(found - table.columns.begin()) + 1;  // Behind the row id.
}

Tables Tables::read(const std::string& path) {
  Tables tables;
  if (!std::filesystem::exists(path)) return tables;
  sqlite3* database = nullptr;
  int code = sqlite3_open(path.c_str(), &database);
  for (const char* name : names) {
    if (code != SQLITE_OK) break;
    Table rows;
    code = sqlite3_exec(database, (std::string("SELECT * FROM ") + name).c_str(), addRow, &rows,
                        nullptr);
    if (code == SQLITE_ERROR) code = SQLITE_OK;  // A table that is not there yet.
    if (!rows.empty()) tables.tables_[name] = std::move(rows);
  }
  sqlite3_close(database);
  if (code != SQLITE_OK) throw std::runtime_error("the database cannot be read: " + path);
  return tables;
}

const Tables::Table& Tables::of(const std::string& table) const {
  static const Table& none = *new Table;
  const auto found = tables_.find(table);
  return found == tables_.end() ? none : found->second;
}

const Row* Tables::find(const std::string& table, RowKey key) const {
  const Table& rows = of(table);
  const auto found = rows.find(key);
  return found == rows.end() ? nullptr : &found->second;
}

void Tables::apply(const Change& change) {
  if (std::ranges::find(names, change.table) == std::end(names)) return;
  Table& table = tables_[change.table];
  if (change.verb == "DELETE") {
    table.erase(change.key);
    if (table.empty()) tables_.erase(change.table);
  } else {
    Row row = change.row;
    row[0] = std::to_string(change.key);
    table[change.key] = std::move(row);
  }
}

}  // namespace pelorino
