#pragma once

#include <sqlite3.h>

#include <algorithm>
#include <cstddef>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace pelorino::bench {

/// SQLite with nothing around it, as the library opens it: defaults, one connection.
class BareStore final {
 public:
  explicit BareStore(const std::string& file) {
    if (sqlite3_open(file.c_str(), &database_) != SQLITE_OK) fail();
    sqlite3_busy_timeout(database_, 10'000);
  }
  ~BareStore() { sqlite3_close(database_); }
  BareStore(const BareStore&) = delete;
  BareStore& operator=(const BareStore&) = delete;

  void run(const std::string& sql) {
    if (sqlite3_exec(database_, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) fail();
  }

  /// The statement that the library stores an event with, in autocommit, prepared anew.
  void insertEvent(const std::string& json) {
    sqlite3_stmt* statement =
        prepare("INSERT INTO events (code, userId, eventJson) VALUES(?, ?, ?)");
    sqlite3_bind_text(statement, 1, "ce", -1, SQLITE_TRANSIENT);
    sqlite3_bind_int64(statement, 2, 1);
    sqlite3_bind_text(statement, 3, json.c_str(), -1, SQLITE_TRANSIENT);
    const bool stored = sqlite3_step(statement) == SQLITE_DONE;
    sqlite3_finalize(statement);
    if (!stored) fail();
  }

  /// Reads each column of each row. Returns the number of bytes, so that no work is optimised away.
  std::size_t readAll(const std::string& query) {
    sqlite3_stmt* statement = prepare(query.c_str());
    std::size_t bytes = 0;
    while (sqlite3_step(statement) == SQLITE_ROW) {
      for (int i = 0; i < sqlite3_column_count(statement); ++i) {
        if (sqlite3_column_text(statement, i) == nullptr) continue;
        bytes += static_cast<std::size_t>(sqlite3_column_bytes(statement, i));
      }
    }
    sqlite3_finalize(statement);
    return bytes;
  }

  /// Does to the store what packing does: reads all waiting events, stores one report with their
  /// text, and deletes them by their ids, each in a transaction of its own.
  void packEvents() {
    std::vector<sqlite3_int64> ids;
    std::string texts;
    sqlite3_stmt* statement = prepare("SELECT * FROM events");
    while (sqlite3_step(statement) == SQLITE_ROW) {
      ids.push_back(sqlite3_column_int64(statement, 0));
      if (const auto* text = sqlite3_column_text(statement, 3)) {
        texts.append(reinterpret_cast<const char*>(text)) += ',';
      }
    }
    finish(statement);

    statement = prepare("INSERT INTO reports (userId, packagesJson, uuid) VALUES(1, ?, 'bare')");
    sqlite3_bind_text(statement, 1, texts.c_str(), -1, SQLITE_STATIC);
    sqlite3_step(statement);
    finish(statement);

    const auto limit =
        static_cast<std::size_t>(sqlite3_limit(database_, SQLITE_LIMIT_VARIABLE_NUMBER, -1));
    for (std::span<const sqlite3_int64> left = ids; !left.empty();) {
      const auto part = left.first(std::min(left.size(), limit));
      std::string sql = "DELETE FROM events WHERE id IN (?";
      for (std::size_t i = 1; i < part.size(); ++i) sql += ",?";
      statement = prepare((sql + ")").c_str());
      int at = 0;
      for (const sqlite3_int64 id : part) sqlite3_bind_int64(statement, ++at, id);
      sqlite3_step(statement);
      finish(statement);
      left = left.subspan(part.size());
    }
  }

  /// The first column of the first row; empty when there is none.
  std::string value(const std::string& query) {
    sqlite3_stmt* statement = prepare(query.c_str());
    std::string text;
    if (sqlite3_step(statement) == SQLITE_ROW) {
      if (const auto* found = sqlite3_column_text(statement, 0)) {
        text = reinterpret_cast<const char*>(found);
      }
    }
    sqlite3_finalize(statement);
    return text;
  }

 private:
  sqlite3_stmt* prepare(const char* sql) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(database_, sql, -1, &statement, nullptr) != SQLITE_OK) fail();
    return statement;
  }
  /// Also reports why the last step has failed.
  void finish(sqlite3_stmt* statement) {
    if (sqlite3_finalize(statement) != SQLITE_OK) fail();
  }
  [[noreturn]] void fail() const { throw std::runtime_error(sqlite3_errmsg(database_)); }

  sqlite3* database_ = nullptr;
};

}  // namespace pelorino::bench
