#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "SQLiteConvertible.h"

namespace pelorino {

/// Which rows of a table are read. What is absent does not restrict.
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

/// Operations on tables, as repositories use them. They never throw: a failure is logged and shows
/// as an empty result.
///
/// Threads: one at a time; the library calls them on the incomeQueue.
class DatabaseProtocol {
 public:
  using RowHandler = std::function<void(const Cursor&)>;

  virtual ~DatabaseProtocol() = default;

  /// Hands each row to `onRow`, in the order of the database. False when it failed, perhaps after
  /// some rows.
  virtual bool query(const TableQuery& query, const RowHandler& onRow) = 0;

  /// The id of the new row; nothing when it was not stored.
  [[nodiscard]] virtual std::optional<RowId> insert(std::string_view tableName,
                                                    std::span<const ColumnValue> content) = 0;

  /// The number of rows that matched; nothing when it failed.
  virtual std::optional<std::int64_t> update(
      std::string_view tableName, std::span<const ColumnValue> values, std::string_view selection,
      std::span<const std::optional<SQLiteValue>> selectionArgs) = 0;

  /// The number of deleted rows; 0 also when it failed.
  virtual std::int64_t deleteRows(std::string_view tableName, std::string_view selection,
                                  std::span<const std::optional<SQLiteValue>> selectionArgs) = 0;

  /// Deletes all rows of a table.
  virtual void clear(std::string_view tableName) = 0;

  /// The most values that one statement can take; at least 1.
  [[nodiscard]] virtual std::size_t argumentLimit() = 0;

  /// Appends the rows that convert to `rows`. False when it failed; what was read before is kept.
  template <SQLiteConvertible T>
  bool query(const TableQuery& tableQuery, std::vector<T>& rows) {
    return query(tableQuery, [&rows](const Cursor& cursor) {
      if (auto row = T::from(cursor)) rows.push_back(std::move(*row));
    });
  }
};

}  // namespace pelorino
