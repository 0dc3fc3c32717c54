#pragma once

#include <string>
#include <vector>

#include "DatabaseProtocol.h"

namespace pelorino {

/// A database of no rows that fails when told to and notes what is asked of it.
class ScriptedDatabase final : public DatabaseProtocol {
 public:
  bool query(const TableQuery& query, const RowHandler&) override {
    calls.push_back("query " + std::string(query.tableName));
    return works;
  }
  std::optional<std::int64_t> insert(const TableStatements& table, SQLiteValues) override {
    calls.push_back("insert " + std::string(table.tableName));
    return works ? std::optional(++lastRowId) : std::nullopt;
  }
  std::optional<std::int64_t> update(const TableStatements& table, SQLiteValues) override {
    calls.push_back("update " + std::string(table.tableName));
    return works ? std::optional<std::int64_t>(1) : std::nullopt;
  }
  std::int64_t deleteRows(std::string_view tableName, std::string_view selection,
                          SQLiteValues selectionArgs) override {
    calls.push_back("delete " + std::string(tableName) + " " + std::string(selection));
    return works ? static_cast<std::int64_t>(selectionArgs.size()) : 0;
  }
  void clear(std::string_view tableName) override {
    calls.push_back("clear " + std::string(tableName));
  }
  std::size_t argumentLimit() override { return limit; }

  bool works = true;
  std::size_t limit = 7;
  std::int64_t lastRowId = 0;
  std::vector<std::string> calls;
};

}  // namespace pelorino
