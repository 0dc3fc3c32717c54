#include "SQLiteProvider.h"

#include <fmt/format.h>
#include <sqlite3.h>

#include <algorithm>
#include <exception>

#include "Logger.h"
#include "SQLiteError.h"
#include "SqlText.h"
#include "Statement.h"
#include "System.h"

namespace pelorino {
namespace {

constexpr const char* folderName = "pelorino";
constexpr const char* fileName = "pelorino.db";
constexpr const char* lockName = "pelorino.lock";

constexpr const char* queryFailed = "[Database Module] Error in query: ";
constexpr const char* writeFailed = "[Database Module] Error in inserting: ";
constexpr const char* deleteFailed = "[Database Module] Error in delete: ";

/// What `operation` gives, or `fallback` and a log line when it throws.
template <class Result, class Operation>
Result guarded(const char* messagePrefix, Result fallback, Operation&& operation) {
  try {
    return operation();
  } catch (const std::exception& error) {
    Logger::writeLog(PLRLogLevel::error,
                     [&] { return fmt::format("{}{}", messagePrefix, error.what()); });
    return fallback;
  }
}

}  // namespace

SQLiteProvider::SQLiteProvider(std::string_view /*applicationKey*/,
                               const std::optional<std::string>& supportDirectory,
                               const Schema& schema)
    : folder_(prepareFolder(supportDirectory)),
      lock_(lock(folder_)),
      database_(prepareFile(folder_)) {
  upgradeScheme(schema);
}

std::optional<std::string> SQLiteProvider::folderPath(
    const std::optional<std::string>& supportDirectory) {
  if (!supportDirectory) return std::nullopt;
  return fmt::format("{}/{}", *supportDirectory, folderName);
}

std::string SQLiteProvider::prepareFolder(const std::optional<std::string>& supportDirectory) {
  auto folder = folderPath(supportDirectory);
  if (!folder) throw SQLiteError::error("SQLite error", SQLITE_ERROR);

  Files& files = System::current().files();
  if (files.exists(*folder)) {
    Logger::writeLog(PLRLogLevel::debug, "[Database Module] Trying to load database");
  } else {
    Logger::writeLog(PLRLogLevel::debug, "[Database Module] It's a clean launch of the SDK");
    if (const auto failure = files.createFolders(*folder)) {
      throw SQLiteError::error(fmt::format("Cannot create {}: {}", *folder, *failure),
                               SQLITE_CANTOPEN);
    }
  }
  return *std::move(folder);
}

// SQLite's own locks last for one statement. Two processes would take turns, and each would send
// what both have read.
std::shared_ptr<FileLock> SQLiteProvider::lock(const std::string& folder) {
  const std::string path = fmt::format("{}/{}", folder, lockName);
  auto attempt = System::current().files().lock(path);
  if (!attempt.lock) {
    throw SQLiteError::error(fmt::format("Cannot lock {}: {}", path, attempt.failure), SQLITE_BUSY);
  }
  return std::move(attempt.lock);
}

std::string SQLiteProvider::prepareFile(const std::string& folder) {
  std::string path = fmt::format("{}/{}", folder, fileName);
  System::current().files().createPrivateFile(path);
  return path;
}

void SQLiteProvider::upgradeScheme(const Schema& schema) {
  const auto steps = static_cast<std::int64_t>(schema.map.size());
  const std::int64_t version = getSchemeVersion();
  if (version == schema.version) return;
  if (version < 0 || version > steps) {
    throw SQLiteError::error(fmt::format("The database has the unknown version {}", version),
                             SQLITE_ERROR);
  }
  for (std::int64_t step = version; step < steps; ++step) {
    for (const auto& statement : schema.map[static_cast<std::size_t>(step)]) run(statement);
  }
  updateSchemeVersion(schema.version);
}

void SQLiteProvider::run(const Schema::Step& step) {
  // An upgrade that was cut short before it had set the version is repeated as a whole.
  if (!step.addedColumn.empty() && hasColumn(step.table, step.addedColumn)) return;
  database_.execute(step.sql);
}

bool SQLiteProvider::hasColumn(std::string_view table, std::string_view column) {
  const Statement statement(database_, SqlText::select({.tableName = table}));
  const auto names = statement.columnNames();
  return std::find(names.begin(), names.end(), column) != names.end();
}

std::int64_t SQLiteProvider::getSchemeVersion() {
  try {
    Statement statement(database_, "PRAGMA user_version");
    while (const auto row = statement.failableNext()) {
      if (const auto version = row->integer(0)) return *version;
    }
  } catch (const std::exception&) {
    // Whatever keeps the version from being read meets the first statement of the upgrade too, and
    // is reported there.
  }
  return 0;
}

void SQLiteProvider::updateSchemeVersion(std::int64_t version) {
  database_.execute(fmt::format("PRAGMA user_version = {}", version));
}

bool SQLiteProvider::query(const TableQuery& query, const RowHandler& onRow) {
  return guarded(queryFailed, false, [&] {
    Statement statement(database_, SqlText::select(query), query.selectionArgs);
    statement.makeIterator();
    while (const auto row = statement.failableNext()) onRow(*row);
    return true;
  });
}

std::optional<std::int64_t> SQLiteProvider::insert(const TableStatements& table,
                                                   SQLiteValues content) {
  return guarded(writeFailed, std::optional<std::int64_t>(), [&] {
    Statement(database_, table.insert).run(content);
    return std::optional(database_.lastInsertRowId());
  });
}

std::optional<std::int64_t> SQLiteProvider::update(const TableStatements& table,
                                                   SQLiteValues values) {
  return guarded(writeFailed, std::optional<std::int64_t>(), [&] {
    Statement(database_, table.update).run(values);
    return std::optional(database_.changes());
  });
}

std::int64_t SQLiteProvider::deleteRows(std::string_view tableName, std::string_view selection,
                                        SQLiteValues selectionArgs) {
  return guarded(deleteFailed, std::int64_t{0}, [&] {
    Statement(database_, SqlText::remove(tableName, selection), selectionArgs).run();
    return database_.changes();
  });
}

void SQLiteProvider::clear(std::string_view tableName) {
  guarded(deleteFailed, false, [&] {
    Statement(database_, SqlText::remove(tableName, {})).run();
    return true;
  });
}

std::size_t SQLiteProvider::argumentLimit() {
  return static_cast<std::size_t>(std::max(database_.variableLimit(), 1));
}

}  // namespace pelorino
