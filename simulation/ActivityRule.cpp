#include <utility>

#include "Rules.h"

namespace pelorino {

using Kind = Record::Kind;

void ActivityRule::onRecord(const Record& record, View& view) {
  if (record.kind == Kind::log) {
    const std::string& line = record.text(0);
    if (line == "DEBUG Start activity") beginActivity(view);
    if (line == "DEBUG Stop activity") isRunning_ = false;
    if (line.starts_with("DEBUG The SDK analytics configuration has been received")) {
      isRunning_ = view.isTracking();
    }
  }
  if (isWrite(record)) checkDue(record, view);
  if (record.kind == Kind::rest) {
    view.failIf(due_ != Due::nothing && !view.isInDoubt("*"), "a session is due at rest");
    checkTimers(record, view);
  }
}

void ActivityRule::beginActivity(const View& view) {
  isRunning_ = true;
  const Row* user = view.tables.find("users", view.activeUser());
  if (user == nullptr || view.isInDoubt("users") || view.isInDoubt("projects")) return;
  const Cell& seen = cell<UserEntry>(*user, "lastBackgroundTime");
  const std::int64_t timeout = view.configured("/sessionTimeout").value().as_int64();
  if (seen && view.time - integer(seen) <= timeout) return;
  due_ = Due::session;
  openedAt_ = view.time;
}

void ActivityRule::checkDue(const Record& statement, View& view) {
  const std::string what = statement.text(0) + " " + statement.text(1);
  view.failIf(due_ == Due::session && what != "UPDATE users",
              "a session does not open although the user was away for too long");
  if (due_ == Due::firstEvent && what != "INSERT events") {
    view.fail("a session opens without an event");
    due_ = Due::nothing;
  }
}

void ActivityRule::onStatement(const StatementRecord& statement, bool isKept, View& view) {
  const bool isFirstEvent = due_ == Due::firstEvent && statement.is("INSERT", "events");
  if (isFirstEvent) due_ = Due::nothing;
  if (!isKept) {
    if (due_ == Due::session && statement.is("UPDATE", "users")) due_ = Due::nothing;
    return;
  }
  view.failIf(isFirstEvent && cell<EventEntry>(statement.changes.front().row, "code") != "ss",
              "a session opens without its event");
  const bool isAddition = statement.verb == "INSERT" || statement.verb == "UPDATE";
  const bool isOfTracking = statement.table == "events" || statement.table == "levelResource" ||
                            statement.table == "currencyAccrualResources";
  if (isAddition && isOfTracking && !view.isTracking() && !view.isInDoubt("projects")) {
    view.fail("something is stored while tracking is off: " + statement.table);
  }
  if (statement.table == "users") changeUsers(statement, view);
  if (statement.table == "projects" && statement.verb == "UPDATE") changeProject(statement, view);
}

void ActivityRule::changeUsers(const StatementRecord& statement, View& view) {
  for (const Change& change : statement.changes) {
    const Row* before = view.tables.find("users", change.key);
    if (change.verb == "DELETE") {
      const bool isInTheWay = view.call && view.call->name == "replace" && before != nullptr &&
                              cell<UserEntry>(*before, "userId") == view.call->arguments.at(1);
      const bool isInactive = areUsersMerged_ && change.key != view.activeUser();
      // Who is active, and under which name, may be known to the library alone.
      const bool isInDoubt = view.isInDoubt("projects") || view.isInDoubt("users");
      view.failIf(!isInTheWay && !isInactive && !isInDoubt, "a user is removed without a reason");
    }
    if (change.verb != "UPDATE" || before == nullptr) continue;
    // Where the clock was set back, a session may get the name of the one before.
    const Cell& session = cell<UserEntry>(change.row, "sessionId");
    const bool isSame = cell<UserEntry>(*before, "sessionId") == session;
    if (due_ == Due::session && integer(session) == openedAt_) {
      due_ = view.isEverythingExcluded() ? Due::nothing : Due::firstEvent;
    } else if (!isSame && !view.isInDoubt("users") && !view.isInDoubt("projects")) {
      view.fail("a session opens although the user was not away for too long");
    }
  }
}

void ActivityRule::changeProject(const StatementRecord& statement, View& view) {
  View after = view;
  for (const Change& change : statement.changes) after.tables.apply(change);
  areUsersMerged_ = !after.configured("/userCounting").value().as_bool();
  if (!after.isTracking()) isRunning_ = false;
}

void ActivityRule::checkTimers(const Record& rest, View& view) {
  // Beside the four there may be one repeat of the request for the configuration and one of that
  // for the identifiers.
  const std::int64_t count = std::stoll(rest.text(0));
  const std::int64_t least = isRunning_ ? 4 : 0;
  if (view.isInDoubt("projects") || view.isInDoubt("*")) return;
  if (count < least || count > least + 2) {
    view.fail("there are " + rest.text(0) + " timers, where the activity says " +
              std::to_string(least));
  }
}

void ActivityRule::onStart(View&) {
  due_ = Due::nothing;
  isRunning_ = false;
  areUsersMerged_ = false;
}

}  // namespace pelorino
