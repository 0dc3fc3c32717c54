#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Connection.h"
#include "DatabaseProtocol.h"
#include "Files.h"

namespace pelorino {

/// What makes the tables of a database file, and brings those of an older one up to date.
struct Schema {
  /// A statement. One that adds a column names the column: unlike the others it cannot be repeated,
  /// so it is skipped if the table has the column.
  struct Step {
    std::string sql;
    std::string_view table = {};
    std::string_view addedColumn = {};
  };

  /// The user_version of an up-to-date file. That of a new file is 0.
  std::int64_t version;
  /// What each version brought, from version 0 on.
  std::vector<std::vector<Step>> map;
};

/// The database file `pelorino/pelorino.db` below a support directory, one for all application
/// keys, and the table operations on it.
///
/// Threads: one at a time.
/// Owns:    the file. A lock on `pelorino.lock` beside it keeps other processes out while this
///          object exists.
/// Errors:  creation throws; the operations log and give an empty result.
class SQLiteProvider final : public DatabaseProtocol {
 public:
  /// Makes the folder (0700) and the file (0600) if missing and brings the schema to its current
  /// version. Throws when there is no support directory, when another process uses the file, and
  /// when it cannot be opened or upgraded. The key is not used.
  ///
  /// For a file of the schema's own version no statement runs. For another version n, map[n] and
  /// all that follow run, and the file gets the schema's version. For n equal to the map's size
  /// that is no statement. A version below 0 or above the map's size is unknown: creation throws
  /// and the file stays as it is.
  SQLiteProvider(std::string_view applicationKey,
                 const std::optional<std::string>& supportDirectory, const Schema& schema);

  /// The folder that holds the file; nothing without a support directory.
  [[nodiscard]] static std::optional<std::string> folderPath(
      const std::optional<std::string>& supportDirectory);

  bool query(const TableQuery& query, const RowHandler& onRow) override;
  [[nodiscard]] std::optional<std::int64_t> insert(const TableStatements& table,
                                                   SQLiteValues content) override;
  std::optional<std::int64_t> update(const TableStatements& table, SQLiteValues values) override;
  std::int64_t deleteRows(std::string_view tableName, std::string_view selection,
                          SQLiteValues selectionArgs) override;
  void clear(std::string_view tableName) override;
  [[nodiscard]] std::size_t argumentLimit() override;

 private:
  static std::string prepareFolder(const std::optional<std::string>& supportDirectory);
  static std::shared_ptr<FileLock> lock(const std::string& folder);
  static std::string prepareFile(const std::string& folder);
  void upgradeScheme(const Schema& schema);
  void run(const Schema::Step& step);
  [[nodiscard]] bool hasColumn(std::string_view table, std::string_view column);
  [[nodiscard]] std::int64_t getSchemeVersion();
  void updateSchemeVersion(std::int64_t version);

  const std::string folder_;
  const std::shared_ptr<FileLock> lock_;  ///< Outlives the connection.
  Connection database_;
};

}  // namespace pelorino
