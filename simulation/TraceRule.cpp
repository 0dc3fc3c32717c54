#include <string_view>
#include <utility>

#include "Rules.h"

namespace pelorino {
namespace {

/// The code of the event that each such call leaves, whatever was before; none for other calls.
std::string_view codeOf(const std::string& call) {
  constexpr std::pair<std::string_view, std::string_view> codes[] = {
      {"customEvent", "ce"},
      {"levelUp", "lu"},
      {"virtualCurrencyPayment", "vp"},
      {"socialNetworkConnect", "sc"},
      {"adImpression", "adrv"},
      {"eventsRouter.sendPushToken", "pt"},
  };
  for (const auto& [name, code] : codes) {
    if (name == call) return code;
  }
  return {};
}

constexpr const char* credit = "currencyAccrual";
constexpr const char* sums = "currencyAccrualResources";

}  // namespace

bool TraceRule::mustBeStored(const View& view) {
  if (!view.call || view.isInDoubt("projects") || view.isInDoubt("users")) return false;
  if (!view.isTracking() || !view.areExclusionsKnown) return false;
  if (view.call->name == credit) return !view.isExcluded("ca", *view.call->arguments.at(2));
  const std::string_view code = codeOf(view.call->name);
  if (code.empty() || view.isExcluded(code)) return false;
  const Row* user = view.tables.find("users", view.activeUser());
  return !view.isEverythingExcluded() && user != nullptr && cell<UserEntry>(*user, "sessionId");
}

void TraceRule::onRecord(const Record& record, View& view) {
  using Kind = Record::Kind;
  if (record.kind == Kind::hostCall && record.text(0) != "0") lastCall_ = record.text(0);
  if (record.kind == Kind::callEnds) lastEnded_ = record.text(0);
  view.failIf(record.kind == Kind::settled && lastEnded_ != lastCall_,
              "the queue stands still: the host's last call has not run");
  if (record.kind == Kind::callBegins) {
    isDemanded_ = mustBeStored(view);
    found_ = 0;
  }
  if (record.kind == Kind::log &&
      record.text(0).ends_with("method an error has occurred: The SDK is not initialized yet!")) {
    isDemanded_ = false;
  }
  if (record.kind == Kind::callEnds && isDemanded_ && mustBeStored(view)) {
    const bool isRefused = found_ == 0 && view.isErrorLogged;
    view.failIf(found_ != 1 && !isRefused, "the call " + view.call->number + " of " +
                                               view.call->name + " has left " +
                                               std::to_string(found_) + " traces");
  }
}

void TraceRule::onStatement(const StatementRecord& statement, bool isKept, View& view) {
  if (!view.call || !isKept || statement.verb == "DELETE") return;
  if (view.call->name == credit && statement.table == sums) ++found_;
  if (!statement.is("INSERT", "events")) return;
  const Row& row = statement.changes.front().row;
  const std::string_view code = codeOf(view.call->name);
  if (code.empty() || cell<EventEntry>(row, "code") != code) return;
  if (code != "ce" ||
      cell<EventEntry>(row, "eventJson")->find('"' + *view.call->arguments.at(0) + '"') !=
          std::string::npos) {
    ++found_;
  }
}

}  // namespace pelorino
