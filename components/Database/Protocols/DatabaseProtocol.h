#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Cursor.h"

namespace pelorino {

/// Which rows of a table are read. An absent field does not restrict.
struct TableQuery {
  std::string_view tableName;
  std::vector<std::string> projection = {};
  std::optional<std::string> join = {};
  std::optional<std::string> selection = {};
  std::vector<std::optional<SQLiteValue>> selectionArgs = {};
  std::optional<std::string> groupBy = {};
  std::optional<std::string> sortOrder = {};
  std::optional<std::int64_t> limit = {};
};

/// The statements that write the rows of a table. Their texts never change, so a table makes them
/// once (SqlText) and not for each row.
struct TableStatements {
  std::string_view tableName;
  std::string insert;
  std::string update;
};

/// Operations on tables, as repositories use them. They never throw: a failure is logged and gives
/// an empty result.
///
/// Threads: one at a time; the library calls them on the incomeQueue.
class DatabaseProtocol {
 public:
  using RowHandler = std::function<void(const Cursor&)>;

  virtual ~DatabaseProtocol() = default;

  /// Passes each row to `onRow`, in the order of the database. False if it failed, possibly after
  /// some rows.
  virtual bool query(const TableQuery& query, const RowHandler& onRow) = 0;

  /// The id of the new row; nothing when it was not stored. A value for each column.
  [[nodiscard]] virtual std::optional<std::int64_t> insert(const TableStatements& table,
                                                           SQLiteValues content) = 0;

  /// The number of rows that matched; nothing when it failed. A value for each column, then those
  /// of the selection.
  virtual std::optional<std::int64_t> update(const TableStatements& table, SQLiteValues values) = 0;

  /// The number of deleted rows; 0 also when it failed.
  virtual std::int64_t deleteRows(std::string_view tableName, std::string_view selection,
                                  SQLiteValues selectionArgs) = 0;

  /// Deletes all rows of a table.
  virtual void clear(std::string_view tableName) = 0;

  /// The most values that one statement can take; at least 1.
  [[nodiscard]] virtual std::size_t argumentLimit() = 0;
};

}  // namespace pelorino
