#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "SQLiteValue.h"

struct sqlite3_stmt;

namespace pelorino {

/// A view of the row on which a statement stands, columns counted from 0. Valid until the statement
/// is stepped again. A column beyond the row reads as NULL.
class Cursor final {
 public:
  explicit Cursor(sqlite3_stmt* handle);

  [[nodiscard]] int columnCount() const { return columnCount_; }

  /// INTEGER, FLOAT or TEXT as it is stored, absent for NULL. Throws SQLiteError for a BLOB, which
  /// no table of the library holds.
  [[nodiscard]] std::optional<SQLiteValue> value(int at) const;

  /// The column's value if it is stored as TEXT or INTEGER; nothing is converted.
  [[nodiscard]] std::optional<std::string> text(int at) const;
  [[nodiscard]] std::optional<std::int64_t> integer(int at) const;

  [[nodiscard]] std::optional<std::string> operator[](int at) const { return text(at); }

 private:
  sqlite3_stmt* handle_;
  int columnCount_;
};

}  // namespace pelorino
