#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "Cursor.h"
#include "FailableIterator.h"
#include "SQLiteValue.h"

struct sqlite3_stmt;

namespace pelorino {

class Connection;

/// One prepared statement: bound, stepped and dropped by the operation that made it. The connection
/// outlives it.
///
/// Threads: one. Steps run on the connection's queue.
/// Errors:  SQLiteError, and EmptyStatementError for a text without a statement.
class Statement final : public FailableIterator<Cursor> {
 public:
  using Values = std::span<const std::optional<SQLiteValue>>;

  Statement(Connection& database, const std::string& sql, Values arguments = {});
  ~Statement() override;
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  /// Binds all parameters anew, one value for each. An empty list leaves everything as it was.
  Statement& bind(Values values);

  /// Binds the values, if any, and steps through all rows, keeping none.
  Statement& run(Values values = {});

  /// Goes back before the first row; failableNext() and next() then walk the rows.
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
