#include "Statement.h"

#include <fmt/format.h>
#include <sqlite3.h>

#include <cstdint>
#include <type_traits>
#include <variant>

#include "Connection.h"
#include "SQLiteError.h"

namespace pelorino {

Statement::Statement(Connection& database, const std::string& sql, SQLiteValues arguments)
    : database_(database) {
  const int code = sqlite3_prepare_v2(database.handle(), sql.c_str(), -1, &connection_, nullptr);
  if (code != SQLITE_OK) throw SQLiteError::error("SQLite error", code);
  if (connection_ == nullptr) throw EmptyStatementError();
  try {
    bind(arguments);
  } catch (...) {
    sqlite3_finalize(connection_);
    throw;
  }
}

Statement::~Statement() {
  sqlite3_finalize(connection_);
}

Statement& Statement::bind(SQLiteValues values) {
  if (values.empty()) return *this;
  reset();
  sqlite3_clear_bindings(connection_);
  const int expected = sqlite3_bind_parameter_count(connection_);
  if (static_cast<std::size_t>(expected) != values.size()) {
    throw SQLiteError::error(fmt::format("{} values expected, {} passed", expected, values.size()),
                             SQLITE_MISUSE, description());
  }
  int index = 0;
  for (const auto& value : values) bind(value, ++index);
  return *this;
}

void Statement::bind(const std::optional<SQLiteValue>& value, int atIndex) {
  const auto bound = [this, atIndex](const auto& plain) {
    using Kind = std::decay_t<decltype(plain)>;
    if constexpr (std::is_same_v<Kind, double>) {
      return sqlite3_bind_double(connection_, atIndex, plain);
    } else if constexpr (std::is_same_v<Kind, std::string>) {
      return sqlite3_bind_text(connection_, atIndex, plain.c_str(), -1, SQLITE_TRANSIENT);
    } else {
      return sqlite3_bind_int64(connection_, atIndex, static_cast<std::int64_t>(plain));
    }
  };
  const int code = value ? std::visit(bound, *value) : sqlite3_bind_null(connection_, atIndex);
  SQLiteError::check(code, database_.handle());
}

Statement& Statement::run(SQLiteValues values) {
  bind(values);
  reset();
  while (step()) {
  }
  return *this;
}

Statement& Statement::makeIterator() {
  reset();
  return *this;
}

std::optional<Cursor> Statement::failableNext() {
  if (!step()) return std::nullopt;
  return cursor();
}

int Statement::columnCount() const {
  return sqlite3_column_count(connection_);
}

std::vector<std::string> Statement::columnNames() const {
  std::vector<std::string> names;
  for (int i = 0; i < columnCount(); ++i) names.emplace_back(sqlite3_column_name(connection_, i));
  return names;
}

std::string Statement::description() const {
  return sqlite3_sql(connection_);
}

bool Statement::step() {
  return database_.queue().sync([this] {
    return SQLiteError::check(sqlite3_step(connection_), database_.handle()) == SQLITE_ROW;
  });
}

void Statement::reset() {
  // The code that comes back is that of the last step, which has been reported already.
  sqlite3_reset(connection_);
}

}  // namespace pelorino
