#pragma once

#include <cstdint>
#include <string>

#include "SynchronousQueue.h"

struct sqlite3;

namespace pelorino {

/// The one connection to a database file, with SQLite's defaults: no pragma; no busy handler, so a
/// locked file fails at once; each statement is its own transaction.
///
/// Threads: steps and execute() run one at a time on `queue`, on the caller's thread.
/// Owns:    the handle; statements must be gone before the connection.
class Connection final {
 public:
  /// Opens the file for reading and writing, making it if it is missing. Throws SQLiteError.
  explicit Connection(const std::string& path);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /// Runs all statements of the text. Throws SQLiteError.
  void execute(const std::string& sql);

  /// Rows that the last INSERT, UPDATE or DELETE touched.
  [[nodiscard]] std::int64_t changes() const;
  [[nodiscard]] std::int64_t lastInsertRowId() const;

  /// The most parameters that one statement can have.
  [[nodiscard]] int variableLimit() const;

  [[nodiscard]] sqlite3* handle() const { return connection_; }
  [[nodiscard]] SynchronousQueue& queue() { return queue_; }

 private:
  static sqlite3* open(const std::string& path);
  static void close(sqlite3* handle);

  SynchronousQueue queue_;
  sqlite3* connection_;
};

}  // namespace pelorino
