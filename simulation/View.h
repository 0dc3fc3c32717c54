#pragma once

#include <boost/json.hpp>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "Record.h"
#include "Tables.h"

namespace pelorino {

/// A statement and the rows that it changes.
struct StatementRecord {
  std::string verb;
  std::string table;
  std::vector<Change> changes = {};
  bool isBegun = false;
  bool isEnded = false;
  bool isKept = false;

  [[nodiscard]] bool is(std::string_view v, std::string_view t) const {
    return verb == v && table == t;
  }
};

/// A call of the host.
struct MadeCall {
  std::string number;
  std::string name;
  Row arguments;
};

/// What is known of the library and its world at one moment, for the rules to judge by.
///
/// What SQLite has stored is known exactly. Where a write has failed, what the library remembers
/// differs from that until it reads the table again: such a table is in doubt.
struct View {
  Tables tables;
  std::int64_t time = 0;
  std::int64_t life = 0;
  std::int64_t start = 0;        ///< Counts the starts of the library: its memory begins afresh.
  bool isTornDown = false;       ///< By the host, and not started since.
  std::optional<MadeCall> call;  ///< The one that the incomeQueue is at.
  std::set<std::string> doubts;
  bool isErrorLogged = false;      ///< By the database, since the call began.
  boost::json::object exclusions;  ///< Those of the process, as the backend has sent them.
  bool areExclusionsKnown = true;
  std::function<void(const std::string&)> fail;

  /// Tells of a rule that is broken, and of the row by which it is.
  void failIf(bool isBroken, std::string_view finding, RowKey row = 0) const;

  [[nodiscard]] bool isInDoubt(const std::string& table) const {
    return doubts.contains(table) || doubts.contains("*");
  }

  /// The project's row, null before there is one.
  [[nodiscard]] const Row* project() const;
  [[nodiscard]] bool isTracking() const;
  /// A value of the stored configuration, by its JSON pointer.
  [[nodiscard]] std::optional<boost::json::value> configured(std::string_view pointer) const;
  [[nodiscard]] bool isEverythingExcluded() const;
  [[nodiscard]] bool isExcluded(std::string_view code, std::string_view argument = {}) const;

  /// The active user's row id, 0 when there is none.
  [[nodiscard]] RowKey activeUser() const;

  /// The host is switching tracking off: what is stored may go.
  [[nodiscard]] bool isTrackingGoingOff() const;
};

/// One kind of demand upon the library.
class Rule {
 public:
  virtual ~Rule() = default;

  virtual void onRecord(const Record&, View&) {}
  /// `isKept`: the statement is durable; else it is as if it had not run. The tables are those
  /// before it.
  virtual void onStatement(const StatementRecord&, bool /*isKept*/, View&) {}
  /// The library reads its tables afresh.
  virtual void onStart(View&) {}
  /// The process is gone, and the tables are what it has left.
  virtual void onEndOfLife(View&) {}
  /// The last life has ended without faults.
  virtual void onEndOfPlay(View&) {}
};

/// A statement that changes a table begins.
[[nodiscard]] inline bool isWrite(const Record& record) {
  return record.kind == Record::Kind::statement && !record.text(1).empty();
}

/// The same text for equal values, whatever the order of keys and the form of numbers.
[[nodiscard]] std::string canonical(const boost::json::value& value);

[[nodiscard]] std::int64_t integer(const Cell& cell);

}  // namespace pelorino
