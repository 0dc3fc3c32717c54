#include <algorithm>

#include "Rules.h"

namespace pelorino {

namespace {
constexpr const char* name = "ann";

/// How many rows of the table, and of this user where there is one, hold the value.
template <class Entry>
std::int64_t count(const View& view, std::string_view column, std::string_view value, RowKey user) {
  const auto& rows = view.tables.of(std::string(Entry::table.name));
  return std::ranges::count_if(rows, [&](const auto& row) {
    return cell<Entry>(row.second, column) == value &&
           (user == 0 || integer(cell<Entry>(row.second, "userId")) == user);
  });
}

bool isMigrated(const Row& project) {
  return integer(cell<ProjectEntry>(project, "isMigrated")) != 0;
}

}  // namespace

void MigrationRule::onRecord(const Record& record, View& view) {
  if (record.kind == Record::Kind::hostCall && record.text(1) == "leaves legacy data") {
    isThereLegacyData_ = true;
  }
  const bool isDone = record.kind == Record::Kind::log &&
                      record.text(0).starts_with("DEBUG Completely migrate data");
  view.failIf(isDone && start_ != 0 && start_ != view.start, "a migration is repeated");
  const Row* project = view.project();
  const bool isMissed = record.kind == Record::Kind::settled && isThereLegacyData_ &&
                        (project == nullptr || !isMigrated(*project));
  view.failIf(isMissed && view.doubts.empty(), "the legacy data are not taken over");
}

void MigrationRule::onStatement(const StatementRecord& statement, bool isKept, View& view) {
  if (!isKept) return;
  for (const Change& change : statement.changes) {
    const bool isUser = change.verb == "INSERT" && change.table == "users";
    if (isUser && cell<UserEntry>(change.row, "userId") == name) checkUser(change, view);
    if (change.verb != "UPDATE" || change.table != "projects") continue;
    const Row* before = view.tables.find("projects", change.key);
    const bool wasMigrated = before != nullptr && isMigrated(*before);
    view.failIf(wasMigrated && !isMigrated(change.row), "a migration is forgotten");
    if (wasMigrated || !isMigrated(change.row)) continue;
    start_ = view.start;
    checkComplete(change.row, view);
  }
}

void MigrationRule::checkUser(const Change& inserted, const View& view) {
  view.failIf(view.project() == nullptr || isMigrated(*view.project()),
              "a user comes over once more");
  view.failIf(count<UserEntry>(view, "userId", name, 0) != 0, "a user comes over twice");
  view.failIf(cell<UserEntry>(inserted.row, "level") != "7", "a user comes over at another level");
}

void MigrationRule::checkComplete(const Row& project, const View& view) {
  for (const char* table : {"users", "peopleCards", "realPaymentMarks", "tutorialMarkEntry"}) {
    if (view.isInDoubt(table)) return;
  }
  const RowKey user = integer(cell<ProjectEntry>(project, "activeUserId"));
  const Row* row = view.tables.find("users", user);
  view.failIf(row == nullptr || cell<UserEntry>(*row, "userId") != name,
              "the user who comes over is not the active one");
  view.failIf(count<TutorialMarkEntry>(view, "step", "-1", user) == 0 ||
                  count<TutorialMarkEntry>(view, "step", "3", user) == 0 ||
                  count<RealPaymentMarkEntry>(view, "orderId", "t1", 0) == 0 ||
                  count<RealPaymentMarkEntry>(view, "orderId", "t2", 0) == 0 ||
                  !std::ranges::any_of(view.tables.of("peopleCards"),
                                       [&](const auto& card) {
                                         return integer(cell<PeopleCardEntry>(card.second,
                                                                              "userId")) == user;
                                       }),
              "a user comes over without card or marks");
}

}  // namespace pelorino
