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

/// A table, read whole on first need and kept in memory: reads are served from the cache, writes go
/// to both. Nothing else writes to the table.
///
/// Threads: the incomeQueue only.
/// Owns:    its cache; the database outlives it.
/// Errors:  none are reported but by insert(); the database has logged them.
class CachedTable final {
 public:
  using Row = RowCache::Row;

  CachedTable(const TableDescription& description, DatabaseProtocol& database);

  [[nodiscard]] DatabaseProtocol& database() const { return database_; }
  /// The rows, read now if they have not been.
  [[nodiscard]] const RowCache& rows();

  bool insert(const Row& row);
  void update(RowId id, const void* model);
  /// False when some of these rows may still be in the file.
  bool remove(std::span<const RowId> ids);
  /// Deletes all rows that belong to one of these.
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
  /// The table was read to its end, so an empty cache means an empty table.
  bool isLoaded_ = false;
};

}  // namespace pelorino
