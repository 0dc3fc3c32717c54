#include "Cursor.h"

#include <fmt/format.h>
#include <sqlite3.h>

#include <new>

#include "SQLiteError.h"

namespace pelorino {
namespace {

std::string textAt(sqlite3_stmt* handle, int at) {
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(handle, at));
  if (text == nullptr) throw std::bad_alloc();
  return text;
}

}  // namespace

Cursor::Cursor(sqlite3_stmt* handle) : handle_(handle), columnCount_(sqlite3_data_count(handle)) {}

std::optional<SQLiteValue> Cursor::value(int at) const {
  const int type = sqlite3_column_type(handle_, at);
  switch (type) {
    case SQLITE_INTEGER:
      return sqlite3_column_int64(handle_, at);
    case SQLITE_FLOAT:
      return sqlite3_column_double(handle_, at);
    case SQLITE_TEXT:
      return textAt(handle_, at);
    case SQLITE_NULL:
      return std::nullopt;
    default:
      throw SQLiteError::error(fmt::format("unsupported column type: {}", type), SQLITE_MISMATCH,
                               sqlite3_sql(handle_));
  }
}

std::optional<std::string> Cursor::text(int at) const {
  if (sqlite3_column_type(handle_, at) != SQLITE_TEXT) return std::nullopt;
  return textAt(handle_, at);
}

std::optional<std::int64_t> Cursor::integer(int at) const {
  if (sqlite3_column_type(handle_, at) != SQLITE_INTEGER) return std::nullopt;
  return sqlite3_column_int64(handle_, at);
}

}  // namespace pelorino
