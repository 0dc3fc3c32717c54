#include "Connection.h"

#include <fmt/format.h>
#include <sqlite3.h>

#include "Logger.h"
#include "SQLiteError.h"

namespace pelorino {

Connection::Connection(const std::string& path)
    : queue_("SQLite.Database"), connection_(open(path)) {}

Connection::~Connection() {
  close(connection_);
}

sqlite3* Connection::open(const std::string& path) {
  sqlite3* handle = nullptr;
  const int code =
      sqlite3_open_v2(path.c_str(), &handle, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
  if (code != SQLITE_OK) {
    // A failed open leaves a handle too, unless there was no memory for one.
    sqlite3_close(handle);
    throw SQLiteError::error("SQLite error", code);
  }
  if (handle == nullptr) throw SQLiteError::error("SQLite error", SQLITE_INTERNAL);
  Logger::writeLog(PLRLogLevel::debug, [&] {
    return fmt::format("[Database Module] Successfully opened connection to database at {}", path);
  });
  return handle;
}

void Connection::close(sqlite3* handle) {
  if (sqlite3_close_v2(handle) == SQLITE_OK) return;
  Logger::writeLog(PLRLogLevel::error, [&] {
    return fmt::format("[Database Module] Couldn't close database: {}", sqlite3_errmsg(handle));
  });
}

void Connection::execute(const std::string& sql) {
  queue_.sync([&] {
    SQLiteError::check(sqlite3_exec(connection_, sql.c_str(), nullptr, nullptr, nullptr),
                       connection_);
  });
}

std::int64_t Connection::changes() const {
  return sqlite3_changes(connection_);
}

std::int64_t Connection::lastInsertRowId() const {
  return sqlite3_last_insert_rowid(connection_);
}

int Connection::variableLimit() const {
  return sqlite3_limit(connection_, SQLITE_LIMIT_VARIABLE_NUMBER, -1);
}

}  // namespace pelorino
