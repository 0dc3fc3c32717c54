#pragma once

#include <cstdint>
#include <functional>

#include "Record.h"

namespace pelorino {

/// Sees every statement that SQLite runs in this process, and each row that one changes, below the
/// library: what is really stored, whatever the library believes.
///
/// Threads: those of SQLite, one at a time.
class StatementWatch final {
 public:
  using Listener = std::function<void(Record::Kind, Row)>;

  StatementWatch() = delete;

  /// Watches every database that is opened from now on, for the rest of the process.
  static void install(Listener listener);

  /// Calls `die` in place of the statement that comes after `statements` others.
  static void dieAfter(std::int64_t statements, std::function<void()> die);
};

}  // namespace pelorino
