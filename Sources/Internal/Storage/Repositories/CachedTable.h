#pragma once

#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "DatabaseProtocol.h"
#include "RowCache.h"
#include "TableDescription.h"

namespace pelorino {

/// A table that is read completely on first use and then kept in memory. Reads use the memory;
/// writes go to the memory and to the file. Nothing else may write to the table.
///
/// Threads: the incomeQueue only.
/// Owns:    its cache; the database is borrowed.
/// Errors:  logged by the database; insert() and remove() also return false.
class CachedTable final {
 public:
  using Row = RowCache::Row;

  CachedTable(const TableDescription& description, DatabaseProtocol& database);

  [[nodiscard]] DatabaseProtocol& database() const { return database_; }
  /// All rows. The first call reads them from the file.
  [[nodiscard]] const RowCache& rows();

  /// Inserts the row and sets its row id. If the file refuses it, memory does not get it either.
  bool insert(const Row& row);
  void update(RowId id, const void* model);
  /// Removes the rows from memory in any case. False when some may still be in the file.
  bool remove(std::span<const RowId> ids);
  /// Deletes all rows of these users or projects.
  void removeOfOwners(std::span<const RowId> owners);
  void clear();

 private:
  void load();
  [[nodiscard]] Row rowOf(const Cursor& cursor) const;
  [[nodiscard]] RowId& idOf(const Row& row) const { return description_.idKey(row.get()); }
  [[nodiscard]] std::vector<std::optional<SQLiteValue>> prepareContetsValues(
      const void* model) const;
  std::int64_t deleteRows(std::string_view column, std::string_view separator,
                          std::span<const RowId> values);

  const TableDescription& description_;
  const TableStatements statements_;
  DatabaseProtocol& database_;
  RowCache cache_;
  /// The table was read completely: an empty cache means an empty table.
  bool isLoaded_ = false;
};

}  // namespace pelorino
