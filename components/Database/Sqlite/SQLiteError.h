#pragma once

#include <exception>
#include <optional>
#include <string>

struct sqlite3;

namespace pelorino {

/// A result code of SQLite that is no success, or a use of a statement that SQLite cannot serve.
class SQLiteError final : public std::exception {
 public:
  /// `statement` is the SQL text, where the thrower has one at hand.
  [[nodiscard]] static SQLiteError error(
      std::string message, int code, const std::optional<std::string>& statement = std::nullopt);

  [[nodiscard]] const std::string& message() const { return message_; }
  [[nodiscard]] int code() const { return code_; }

  /// "<message> (<sql>) (code: <code>)", without the SQL text where there is none.
  [[nodiscard]] const std::string& description() const { return description_; }
  [[nodiscard]] const char* what() const noexcept override { return description_.c_str(); }

  /// Throws with the connection's own words unless `code` is SQLITE_OK, SQLITE_ROW or SQLITE_DONE;
  /// gives the code back otherwise.
  static int check(int code, sqlite3* connection);

 private:
  SQLiteError(std::string message, int code, const std::optional<std::string>& statement);

  std::string message_;
  int code_;
  std::string description_;
};

/// SQL text that holds no statement: blanks or comments only.
class EmptyStatementError final : public std::exception {
 public:
  [[nodiscard]] const char* what() const noexcept override { return "EmptyStatementError()"; }
};

}  // namespace pelorino
