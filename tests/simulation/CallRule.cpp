#include "CallRule.h"

#include <map>

namespace pelorino {
namespace {

/// Calls that leave one event each, whatever was before, and its code.
const std::map<std::string, std::string>& codes() {
  static const auto& made = *new std::map<std::string, std::string>{
      {"customEvent", "ce"},          {"levelUp", "lu"},        {"virtualCurrencyPayment", "vp"},
      {"socialNetworkConnect", "sc"}, {"adImpression", "adrv"},
  };
  return made;
}

constexpr const char* credit = "currencyAccrual";
constexpr const char* sums = "currencyAccrualResources";

}  // namespace

bool CallRule::mustBeStored(const View& view) {
  if (!view.call || view.isInDoubt("projects") || view.isInDoubt("users")) return false;
  if (!view.isTracking() || !view.areExclusionsKnown) return false;
  if (view.call->name == credit) return !view.isExcluded("ca", *view.call->arguments.at(2));
  const auto code = codes().find(view.call->name);
  if (code == codes().end() || view.isExcluded(code->second)) return false;
  const Row* user = view.tables.find("users", view.activeUser());
  return !view.isEverythingExcluded() && user != nullptr && (*user)[3];
}

void CallRule::onRecord(const Record& record, View& view) {
  using Kind = Record::Kind;
  if (record.kind == Kind::callBegins) {
    isDemanded_ = mustBeStored(view);
    found_ = 0;
  }
  if (record.kind == Kind::log &&
      record.text(0).ends_with("method an error has occurred: The SDK is not initialized yet!")) {
    isDemanded_ = false;
  }
  if (record.kind == Kind::callEnds && isDemanded_ && mustBeStored(view)) finish(view);
}

void CallRule::onStatement(const StatementRecord& statement, bool isKept, View& view) {
  if (!view.call || !isKept || statement.verb == "DELETE") return;
  const bool isCredit = view.call->name == credit;
  if (isCredit && statement.table == sums) ++found_;
  const auto code = codes().find(view.call->name);
  if (code == codes().end() || !statement.is("INSERT", "events")) return;
  const Row& row = statement.changes.front().row;
  if (row[1] != code->second) return;
  if (code->second != "ce" ||
      row[3]->find("\"" + *view.call->arguments.at(0) + "\"") != std::string::npos)
    ++found_;
}

void CallRule::finish(const View& view) {
  if (found_ == 1 || (found_ == 0 && view.isErrorLogged)) return;
  view.fail("the call " + view.call->number + " of " + view.call->name + " has left " +
            std::to_string(found_) + " traces");
}

}  // namespace pelorino
