#pragma once

#include <exception>
#include <optional>
#include <string>
#include <vector>

#include "Cursor.h"

struct sqlite3_stmt;

namespace pelorino {

class Connection;

/// A sequence whose next step can fail.
template <class Element>
class FailableIterator {
 public:
  virtual ~FailableIterator() = default;

  /// The next element; absent at the end. Throws if the step fails.
  [[nodiscard]] virtual std::optional<Element> failableNext() = 0;

  /// The same, but a failure counts as the end.
  [[nodiscard]] std::optional<Element> next() noexcept {
    try {
      return failableNext();
    } catch (const std::exception&) {
      return std::nullopt;
    }
  }
};

/// One prepared statement. The operation that prepares it binds, steps and destroys it. The
/// connection outlives it.
///
/// Threads: one. Steps run on the connection's queue.
/// Errors:  SQLiteError, and EmptyStatementError for a text without a statement.
class Statement final : public FailableIterator<Cursor> {
 public:
  Statement(Connection& database, const std::string& sql, SQLiteValues arguments = {});
  ~Statement() override;
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  /// Binds all parameters, one value for each. An empty list changes nothing.
  Statement& bind(SQLiteValues values);

  /// Binds the values, if any, and steps through all rows without reading them.
  Statement& run(SQLiteValues values = {});

  /// Resets to before the first row. failableNext() and next() then step through the rows.
  Statement& makeIterator();
  [[nodiscard]] std::optional<Cursor> failableNext() override;

  /// The current row.
  [[nodiscard]] Cursor cursor() const { return Cursor(connection_); }
  [[nodiscard]] int columnCount() const;
  [[nodiscard]] std::vector<std::string> columnNames() const;

  /// The SQL text.
  [[nodiscard]] std::string description() const;

 private:
  bool step();
  void reset();
  void bind(const std::optional<SQLiteValue>& value, int atIndex);

  Connection& database_;
  sqlite3_stmt* connection_ = nullptr;
};

}  // namespace pelorino
