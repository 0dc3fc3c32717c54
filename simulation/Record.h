#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pelorino {

/// One column of a row as text; absent for NULL.
using Cell = std::optional<std::string>;
using Row = std::vector<Cell>;

/// One thing that happened in one life of the simulated process. Lives tell them in their order;
/// they are all that a checker knows.
struct Record {
  enum class Kind : char {
    hostCall = 'H',       ///< name, arguments: the host has called the library.
    callBegins = 'B',     ///< number: the incomeQueue reaches the host's call of that number.
    callEnds = 'E',       ///< number: the call has run.
    log = 'L',            ///< a line of the library's log.
    statement = 'S',      ///< verb, table: SQLite begins a statement.
    rowChange = 'R',      ///< verb, table, row id, columns after the change: not durable yet.
    statementEnds = 'D',  ///< "kept" or "undone".
    request = 'Q',        ///< path, body, "accepted" or not, "answered" or not, how, the answer.
    answer = 'A',         ///< number, texts: what the handler of that call has been given.
    rest = 'T',           ///< pending timers, waits: nothing can run without time passing.
    settled = 'G',        ///< everything that is stored should have been delivered by now.
    finding = 'V',        ///< text: what the life itself found to be wrong.
    end = 'X',            ///< how the life ended, key store, application state.
  };

  Kind kind = Kind::log;
  std::int64_t time = 0;  ///< The device clock, milliseconds since 1970.
  Row fields;

  [[nodiscard]] const std::string& text(std::size_t index) const;
  [[nodiscard]] std::string description() const;
};

/// Writes records to a descriptor, each at once, so that none is lost with the process.
class Journal final {
 public:
  explicit Journal(int descriptor) : descriptor_(descriptor) {}
  void write(const Record& record) const;

 private:
  int descriptor_;
};

/// The records of a file, from its beginning.
class JournalReader final {
 public:
  /// Closes the descriptor at the end.
  explicit JournalReader(int descriptor) : file_(::fdopen(descriptor, "r"), std::fclose) {
    std::rewind(file_.get());
  }
  /// False at the end. A record that a process has not written whole is dropped.
  [[nodiscard]] bool next(Record& record);

 private:
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file_;
};

}  // namespace pelorino
