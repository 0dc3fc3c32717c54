#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "Connection.h"
#include "DatabaseProtocol.h"
#include "Files.h"
#include "SQLiteContracts.h"
#include "SqlText.h"

namespace pelorino {

/// The database file `pelorino/pelorino.db` below a support directory, one for all application
/// keys, and the table operations on it.
///
/// Threads: one at a time.
/// Owns:    the file, for as long as it lives: other processes are kept out by a lock on
///          `pelorino.lock` beside it.
/// Errors:  creation throws; the operations log and give an empty result.
class SQLiteProvider final : public DatabaseProtocol {
 public:
  /// Makes the folder (0700) and the file (0600) if missing and brings the schema to its current
  /// version. Throws when there is no support directory, when another process uses the file,
  /// when it cannot be opened or upgraded, and when it is of a version that this code does not
  /// know; such a file stays as it is. The key enters nothing.
  SQLiteProvider(std::string_view applicationKey,
                 const std::optional<std::string>& supportDirectory);

  /// The folder that holds the file; nothing without a support directory.
  [[nodiscard]] static std::optional<std::string> folderPath(
      const std::optional<std::string>& supportDirectory);

  using DatabaseProtocol::query;
  bool query(const TableQuery& query, const RowHandler& onRow) override;
  [[nodiscard]] std::optional<RowId> insert(std::string_view tableName,
                                            std::span<const ColumnValue> content) override;
  std::optional<std::int64_t> update(
      std::string_view tableName, std::span<const ColumnValue> values, std::string_view selection,
      std::span<const std::optional<SQLiteValue>> selectionArgs) override;
  std::int64_t deleteRows(std::string_view tableName, std::string_view selection,
                          std::span<const std::optional<SQLiteValue>> selectionArgs) override;
  void clear(std::string_view tableName) override;
  [[nodiscard]] std::size_t argumentLimit() override;

 private:
  static std::string prepareFolder(const std::optional<std::string>& supportDirectory);
  static std::shared_ptr<FileLock> lock(const std::string& folder);
  static std::string prepareFile(const std::string& folder);
  void upgradeScheme();
  void run(const SQLiteContracts::Step& step);
  [[nodiscard]] bool hasColumn(std::string_view table, std::string_view column);
  [[nodiscard]] std::int64_t getSchemeVersion();
  void updateSchemeVersion(std::int64_t version);

  const std::string folder_;
  const std::shared_ptr<FileLock> lock_;  ///< Outlives the connection.
  Connection database_;
  KeptSqlTexts insertTexts_;
  KeptSqlTexts updateTexts_;
};

}  // namespace pelorino
