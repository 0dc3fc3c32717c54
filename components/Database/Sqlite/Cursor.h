#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <variant>

struct sqlite3_stmt;

namespace pelorino {

/// The kinds of value that may be bound to a statement. A `bool` is stored as the integer 0 or 1, a
/// text as its UTF-8 bytes up to the first NUL.
using SQLiteValue = std::variant<double, std::int64_t, std::string, bool>;

/// What is bound to the parameters of a statement, in their order. NULL is the absent value.
using SQLiteValues = std::span<const std::optional<SQLiteValue>>;

/// A view of a statement's current row. Columns count from 0. Valid until the statement is stepped
/// again. A column beyond the last one reads as NULL.
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

 private:
  sqlite3_stmt* handle_;
  int columnCount_;
};

}  // namespace pelorino
