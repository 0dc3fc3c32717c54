#include <algorithm>
#include <limits>
#include <utility>

#include "Rules.h"

namespace pelorino {
namespace {

constexpr const char* table = "currencyAccrualResources";

std::int64_t limited(std::int64_t sum) {
  return std::min<std::int64_t>(sum, std::numeric_limits<std::int32_t>::max());
}

bool isCredit(const View& view) {
  return view.call && view.call->name == "currencyAccrual";
}

/// Type, source and name to amount.
std::map<std::string, std::int64_t> amountsOf(const boost::json::object& event) {
  std::map<std::string, std::int64_t> amounts;
  for (const auto& [key, type] : {std::pair("earned", "0"), std::pair("bought", "1")}) {
    const auto* sources = event.if_contains(key);
    if (sources == nullptr) continue;
    for (const auto& [source, names] : sources->as_object()) {
      for (const auto& [name, amount] : names.as_object()) {
        amounts[std::string(type) + "|" + std::string(source) + "|" + std::string(name)] =
            amount.as_int64();
      }
    }
  }
  return amounts;
}

}  // namespace

AccrualRule::Sum AccrualRule::sumOf(const Row& row) {
  const auto of = [&](std::string_view column) -> const Cell& {
    return cell<CurrencyAccrualResourcesEntry>(row, column);
  };
  return {.user = integer(of("userId")),
          .kind = of("type").value_or("") + "|" + of("source").value_or("") + "|" +
                  of("name").value_or(""),
          .amount = integer(of("amount"))};
}

void AccrualRule::onRecord(const Record& record, View& view) {
  if (!isWrite(record)) return;
  // The event may have been the last that a report needed.
  const bool isDelete = record.text(0) == "DELETE";
  if (record.text(1) == "reports" || (isDelete && record.text(1) == "events")) return;
  const bool isDeletion = isDelete && record.text(1) == table;
  view.failIf(std::exchange(isDeletionDue_, false) && !isDeletion,
              "sums have been reported and are not deleted");
}

void AccrualRule::onStatement(const StatementRecord& statement, bool isKept, View& view) {
  if (view.isInDoubt("*")) isUnknown_ = true;
  if (statement.is("INSERT", "events")) {
    for (const Change& change : statement.changes) {
      if (cell<EventEntry>(change.row, "code") != "ca") continue;
      if (isKept) report(statement, view);
      flushed_ = integer(cell<EventEntry>(change.row, "userId"));
      isDeletionDue_ = true;
    }
    if (!isKept && statement.changes.empty()) {
      isUnknown_ = true;  // It may have been such an event.
      flushed_ = -1;
    }
  }
  if (statement.table != table) return;
  statement.verb == "DELETE" ? remove(statement, isKept, view) : add(statement, isKept, view);
}

void AccrualRule::add(const StatementRecord& statement, bool isKept, View& view) {
  if (!isCredit(view)) return view.fail("a sum changes though the host has credited nothing");
  const std::int64_t amount = std::stoll(*view.call->arguments[1]);
  if (!isKept && statement.changes.empty()) isUnknown_ = true;
  for (const Change& change : statement.changes) {
    if (statement.verb == "UPDATE") {
      addAmount(sums_[change.key], change, isKept, view);
    } else if (isKept) {
      const Sum& sum = sums_[change.key] = sumOf(change.row);
      credited_ += amount;
      const Row& given = view.call->arguments;
      const std::string kind = *given[3] + "|" + *given[2] + "|" + *given[0];
      view.failIf(sum.kind != kind || sum.amount != amount,
                  "a new sum is not what the host has credited");
      view.failIf(sum.user != view.activeUser() && !view.isInDoubt("projects"),
                  "a credit goes to another user than the active one");
      for (const auto& [key, other] : sums_) {
        const bool isSame = other.user == sum.user && other.kind == sum.kind && key != change.key;
        view.failIf(isSame && !other.isForgotten && !view.isInDoubt("*"),
                    "there are two sums of the same kind");
      }
    }
  }
}

void AccrualRule::addAmount(Sum& sum, const Change& change, bool isKept, View& view) {
  const std::int64_t before = sum.amount;
  sum.amount = limited(before + std::stoll(*view.call->arguments[1]));
  credited_ += sum.amount - before;
  view.failIf(isKept && sumOf(change.row).amount != sum.amount && !isUnknown_,
              "a sum is not what it was and what the host has credited");
}

void AccrualRule::report(const StatementRecord& statement, View& view) {
  const Row& row = statement.changes.front().row;
  std::map<std::string, std::int64_t> expected;
  for (auto& [key, sum] : sums_) {
    if (sum.user != integer(cell<EventEntry>(row, "userId")) || sum.isForgotten) continue;
    std::int64_t& amount = expected[sum.kind];
    // Two sums of one kind are there after a deletion that failed.
    const std::int64_t before = std::exchange(amount, limited(amount + sum.amount));
    dropped_ += before + sum.amount - amount;
    sum.isReported = true;
  }
  const auto amounts =
      amountsOf(boost::json::parse(*cell<EventEntry>(row, "eventJson")).as_object());
  for (const auto& [kind, amount] : amounts) reported_ += amount;
  view.failIf(amounts != expected && !isUnknown_, "a report of sums does not hold what they are");
}

void AccrualRule::remove(const StatementRecord& statement, bool isKept, View& view) {
  isDeletionDue_ = false;
  RowKey flushed = std::exchange(flushed_, 0);
  if (!isKept) {
    // Where all events are excluded, no event tells whose sums are to go: the first of them does.
    // What a switch of tracking clears is read again.
    if (flushed == 0 && !statement.changes.empty() && !view.isTrackingGoingOff()) {
      flushed = sums_[statement.changes.front().key].user;
    }
    if (flushed == 0 || view.isInDoubt("users")) isUnknown_ = true;
    for (auto& [key, sum] : sums_) {
      const bool isMeant = sum.user == flushed || flushed == -1;
      if (isMeant || !view.tables.has("users", sum.user)) sum.isForgotten = true;
    }
    return;
  }
  for (const Change& change : statement.changes) {
    const Sum& sum = sums_[change.key];
    const bool mayGo = sum.isForgotten || sum.user == flushed || flushed == -1 ||
                       view.isEverythingExcluded() || view.isTrackingGoingOff() ||
                       !view.isTracking() || view.isInDoubt("projects") ||
                       !view.tables.has("users", sum.user);
    view.failIf(!mayGo, "sums are deleted without having been reported");
    if (!sum.isReported) dropped_ += sum.amount;
    sums_.erase(change.key);
  }
}

void AccrualRule::onStart(View& view) {
  flushed_ = 0;
  isDeletionDue_ = false;
  std::map<RowKey, Sum> fresh;
  for (const auto& [key, row] : view.tables.of(table)) {
    const Sum& sum = fresh[key] = sumOf(row);
    const auto known = sums_.find(key);
    if (known == sums_.end()) continue;
    // What could not be written is lost, what could not be deleted is counted again.
    if (!known->second.isReported) dropped_ += known->second.amount - sum.amount;
    if (known->second.isReported) repeated_ += sum.amount;
  }
  sums_ = std::move(fresh);
  checkBalance(view);
  if (!std::exchange(isUnknown_, false)) return;
  // From here on the account is that of what the file holds.
  reported_ = repeated_ = dropped_ = 0;
  credited_ = left();
}

void AccrualRule::onEndOfPlay(View& view) {
  checkBalance(view);
}

std::int64_t AccrualRule::left() const {
  std::int64_t left = 0;
  for (const auto& [key, sum] : sums_) left += sum.amount;
  return left;
}

void AccrualRule::checkBalance(const View& view) const {
  if (!isUnknown_ && credited_ + repeated_ != reported_ + dropped_ + left()) {
    view.fail("the host has credited " + std::to_string(credited_) + ", repeated were " +
              std::to_string(repeated_) + ", reported " + std::to_string(reported_) + ", dropped " +
              std::to_string(dropped_) + ", left " + std::to_string(left()));
  }
}

}  // namespace pelorino
