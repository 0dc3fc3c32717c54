#pragma once

#include <exception>
#include <optional>
#include <string>

struct sqlite3;

namespace pelorino {

/// A failure of SQLite, or a use of a statement that SQLite does not support.
class SQLiteError final : public std::exception {
 public:
  /// `statement` is the SQL text, if there is one.
  [[nodiscard]] static SQLiteError error(
      std::string message, int code, const std::optional<std::string>& statement = std::nullopt);

  [[nodiscard]] const std::string& message() const { return message_; }
  [[nodiscard]] int code() const { return code_; }

  /// "<message> (<sql>) (code: <code>)", or without the SQL text if there is none.
  [[nodiscard]] const std::string& description() const { return description_; }
  [[nodiscard]] const char* what() const noexcept override { return description_.c_str(); }

  /// Returns SQLITE_OK, SQLITE_ROW and SQLITE_DONE. Throws for any other code, with the
  /// connection's message.
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
