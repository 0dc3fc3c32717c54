#include "SQLiteError.h"

#include <fmt/format.h>
#include <sqlite3.h>

#include <utility>

namespace pelorino {

SQLiteError::SQLiteError(std::string message, int code, const std::optional<std::string>& statement)
    : message_(std::move(message)),
      code_(code),
      description_(statement ? fmt::format("{} ({}) (code: {})", message_, *statement, code)
                             : fmt::format("{} (code: {})", message_, code)) {}

SQLiteError SQLiteError::error(std::string message, int code,
                               const std::optional<std::string>& statement) {
  return {std::move(message), code, statement};
}

int SQLiteError::check(int code, sqlite3* connection) {
  if (code == SQLITE_OK || code == SQLITE_ROW || code == SQLITE_DONE) return code;
  throw error(sqlite3_errmsg(connection), code);
}

}  // namespace pelorino
