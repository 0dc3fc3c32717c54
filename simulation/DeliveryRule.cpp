#include <algorithm>
#include <set>
#include <utility>

#include "Rules.h"

namespace pelorino {
namespace {

namespace json = boost::json;

/// The events of packages, in order, packages told apart.
std::string bodyOf(const json::array& packages) {
  std::string body;
  for (const auto& package : packages) body += canonical(package.at("events"));
  return body;
}

std::vector<std::string> eventsOf(const json::array& packages) {
  std::vector<std::string> events;
  for (const auto& package : packages) {
    for (const auto& event : package.at("events").as_array()) events.push_back(canonical(event));
  }
  return events;
}

/// False also for one whose removal the disk may have refused.
bool isUser(RowKey user, const View& view) {
  return view.tables.has("users", user) && !view.isInDoubt("users");
}

}  // namespace

void DeliveryRule::onRecord(const Record& record, View& view) {
  ++moment_;
  using Kind = Record::Kind;
  if (record.kind == Kind::log) {
    const std::string& line = record.text(0);
    constexpr std::string_view trying = "INFO Trying to send the Report [";
    if (line.starts_with(trying)) sending_ = line.substr(trying.size(), 36);
    if (line.find("] submission failed: ") < 100) {
      lastFailure_ = moment_;
      isBatchEnding_ = true;
    }
    if (line.starts_with("INFO Send buffered events for user [")) beginBatch();
  }
  const bool isDue = isWrite(record) && std::exchange(isDeletionDue_, false);
  view.failIf(isDue && (record.text(0) != "DELETE" || record.text(1) != "events"),
              "packed events are not deleted after their report was stored");
  if (record.kind == Kind::callEnds && view.call && view.call->name == "sendBufferedEvents") {
    lastTrigger_ = moment_;
  }
  if (record.kind == Kind::request) receive(record, view);
  if (record.kind == Kind::rest && record.fields.size() == 1) checkRest(view);
  if (record.kind == Kind::settled) checkSettled(view);
}

void DeliveryRule::onStatement(const StatementRecord& statement, bool isKept, View& view) {
  if (statement.is("INSERT", "events") && isKept) storeEvents(statement, view);
  if (statement.is("DELETE", "events")) deleteEvents(statement, isKept, view);
  if (statement.is("INSERT", "reports") && isKept) storeReports(statement, view);
  if (statement.is("DELETE", "reports")) deleteReports(statement, isKept, view);
}

void DeliveryRule::onStart(View&) {
  for (auto& [key, event] : events_) {
    event.report = 0;
    event.isForgotten = false;
  }
  for (auto& [key, report] : reports_) report.isForgotten = false;
}

void DeliveryRule::beginBatch() {
  isBatchEnding_ = false;
  for (auto& [key, report] : reports_) {
    if (std::exchange(report.isForgottenByBatch, false)) report.due = moment_;
  }
}

void DeliveryRule::storeEvents(const StatementRecord& statement, View& view) {
  for (const Change& change : statement.changes) {
    StoredEvent& event = events_[change.key];
    event.user = integer(cell<EventEntry>(change.row, "userId"));
    event.stored = moment_;
    event.json = canonical(json::parse(cell<EventEntry>(change.row, "eventJson").value_or("")));
    view.failIf(!view.tables.has("users", event.user), "an event of no known user is stored");
  }
}

void DeliveryRule::deleteEvents(const StatementRecord& statement, bool isKept, View& view) {
  const auto packed = std::exchange(packed_, {});
  isDeletionDue_ = false;
  if (!isKept) {
    const bool isCleared = packed.empty() && view.isTrackingGoingOff();
    for (const RowKey key : packed) events_[key].isForgotten = true;
    for (auto& [key, event] : events_) {
      if (!view.tables.has("users", event.user)) event.isForgotten = true;
      if (isCleared) event.isForgotten = false;  // The whole table is read again.
      if (isCleared) event.report = 0;
    }
    return;
  }
  for (const Change& change : statement.changes) {
    StoredEvent& event = events_[change.key];
    if (event.report != 0 && !reports_[event.report].isGone) continue;
    const bool mayGo = view.isTrackingGoingOff() || !isUser(event.user, view);
    if (!mayGo && view.isInDoubt("*") && passOnPacking(change.key)) continue;
    view.failIf(!mayGo, "a stored event is deleted without having been packed:", change.key);
    event.isDropped = true;
  }
}

bool DeliveryRule::passOnPacking(RowKey key) {
  const std::string& json = events_[key].json;
  for (auto& [number, report] : reports_) {
    for (RowKey& event : report.events) {
      if (report.isGone || events_[event].json != json || events_[event].report != number) continue;
      events_[event].report = 0;
      event = key;
      events_[key].report = number;
      return true;
    }
  }
  return false;
}

void DeliveryRule::storeReports(const StatementRecord& statement, View& view) {
  for (const Change& change : statement.changes) {
    StoredReport& report = reports_[change.key];
    const auto packages =
        json::parse(cell<ReportEntry>(change.row, "packagesJson").value_or("[]")).as_array();
    report.user = integer(cell<ReportEntry>(change.row, "userId"));
    report.body = bodyOf(packages);
    report.uuid = cell<ReportEntry>(change.row, "uuid").value_or("");
    report.start = view.start;
    report.stored = moment_;
    report.due = moment_;
    report.isForgottenByBatch = isBatchEnding_;

    auto texts = eventsOf(packages);
    std::size_t next = 0;
    for (const auto& [key, row] : view.tables.of("events")) {
      StoredEvent& event = events_[key];
      if (event.user != report.user) continue;
      if (event.isForgotten && !view.isInDoubt("*")) continue;
      const bool isFree = event.report == 0 || view.isInDoubt("*");
      if (next < texts.size() && texts[next] == event.json && isFree) {
        event.report = change.key;
        report.events.push_back(key);
        ++next;
      } else {
        view.failIf(!view.isInDoubt("*"), "a report leaves out or repeats event", key);
      }
    }
    view.failIf(next != texts.size(), "a report holds events that are not stored, or not in order");

    const auto count = view.configured("/countForRequest");
    if (count && !view.isInDoubt("projects")) {
      const auto limit = static_cast<std::size_t>(std::max<std::int64_t>(1, count->as_int64()));
      view.failIf(packages.size() != (texts.size() + limit - 1) / limit,
                  "a report has another number of packages than the configuration says");
    }
    packed_ = report.events;
    isDeletionDue_ = true;
  }
}

void DeliveryRule::deleteReports(const StatementRecord& statement, bool isKept, View& view) {
  if (!isKept) {
    for (auto& [key, report] : reports_) {
      const bool isOrphan = !view.tables.has("users", report.user);
      if (report.answer == Answer::arrived) report.isDeletionRefused = true;
      if (report.answer == Answer::arrived || isOrphan) report.isForgotten = true;
      if (view.isTrackingGoingOff()) report.isForgotten = false;  // The whole table is read again.
    }
    return;
  }
  for (const Change& change : statement.changes) {
    StoredReport& report = reports_[change.key];
    report.isGone = true;
    report.goneLife = view.life;
    if (report.answer == Answer::arrived) continue;
    view.failIf(!view.isTrackingGoingOff() && isUser(report.user, view),
                "a report is deleted before it was delivered:", change.key);
    for (const RowKey key : report.events) events_[key].isDropped = true;
  }
}

void DeliveryRule::receive(const Record& request, View& view) {
  if (!request.text(0).ends_with("/analytics/report")) return;
  const auto body = json::parse(request.text(1));
  const auto& reports = body.at("reports").as_array();
  view.failIf(reports.size() != 1, "a request holds another number of reports than one");
  const auto& packages = reports.at(0).at("packages").as_array();
  const auto report = std::ranges::find_if(
      reports_, [&](const auto& known) { return known.second.uuid == sending_; });
  if (report == reports_.end()) return receiveFlash(packages, view);
  view.failIf(report->second.body != bodyOf(packages),
              "a report is sent otherwise than it was stored:", report->first);
  receiveStored(report->second, report->first, request, view);
}

void DeliveryRule::receiveFlash(const json::array& packages, View& view) {
  bool isFlash = packages.size() == 1 && packages[0].at("events").as_array().size() == 1;
  if (isFlash) {
    const auto& event = packages[0].at("events").as_array()[0].as_object();
    isFlash = event.at("code") == "al" ||
              (event.at("code") == "ts" && event.at("trackingAllowed") == false);
  }
  if (!isFlash) view.fail("something is sent that was never stored: " + bodyOf(packages));
}

void DeliveryRule::receiveStored(StoredReport& report, RowKey key, const Record& request,
                                 View& view) {
  const bool isAnswered = report.answer == Answer::arrived && report.answerLife == view.life;
  view.failIf(isAnswered, "a report is sent again although its answer has arrived:", key);
  view.failIf(report.isGone && report.goneLife < view.life,
              "a report is sent that is not stored any more:", key);
  for (const auto& [number, row] : view.tables.of("reports")) {
    const StoredReport& earlier = reports_[number];
    if (number >= key) break;
    if (earlier.user != report.user || earlier.isForgotten || view.isInDoubt("*")) continue;
    view.failIf(earlier.answer != Answer::arrived,
                "a report overtakes an earlier one of its user:", key);
  }
  if (request.text(2) != "accepted") return;
  for (const RowKey event : report.events) ++events_[event].deliveries;
  report.answer = request.text(3) == "answered" ? Answer::arrived : Answer::lost;
  report.answerLife = view.life;
}

void DeliveryRule::checkRest(const View& view) {
  view.failIf(isDeletionDue_, "packed events are still there at rest");
  for (const auto& [key, row] : view.tables.of("reports")) {
    const StoredReport& report = reports_[key];
    if (report.isForgotten || view.isInDoubt("*") || view.isInDoubt("users")) continue;
    if (report.answer == Answer::arrived) {
      view.failIf(report.answerLife == view.life && !report.isDeletionRefused,
                  "a delivered report is still stored at rest:", key);
    } else {
      const bool mayWait = view.isTornDown || report.isForgottenByBatch;
      view.failIf(!mayWait && report.start == view.start && lastFailure_ < report.due,
                  "at rest, with no failure since, a report has not been sent:", key);
    }
  }
}

void DeliveryRule::checkSettled(const View& view) {
  if (view.isInDoubt("*") || view.isInDoubt("users")) return;
  for (const auto& [key, row] : view.tables.of("events")) {
    const StoredEvent& event = events_[key];
    const bool isDue = event.stored <= lastTrigger_ && view.tables.has("users", event.user);
    view.failIf(isDue && !event.isForgotten, "the backend is well, but has not got event", key);
  }
  for (const auto& [key, row] : view.tables.of("reports")) {
    const StoredReport& report = reports_[key];
    const bool isDue = report.stored <= lastTrigger_ && view.tables.has("users", report.user);
    view.failIf(isDue && !report.isForgotten, "the backend is well, but has not got report", key);
  }
}

void DeliveryRule::onEndOfLife(View& view) {
  packed_.clear();
  isDeletionDue_ = false;
  std::set<RowKey> waiting;
  for (const auto& [key, report] : reports_) {
    if (!report.isGone) waiting.insert(report.events.begin(), report.events.end());
  }
  for (const auto& [key, event] : events_) {
    const bool isStored = view.tables.has("events", key) || waiting.contains(key);
    view.failIf(event.deliveries == 0 && !event.isDropped && !isStored,
                "an event is neither stored nor delivered:", key);
  }
}

void DeliveryRule::onEndOfPlay(View& view) {
  for (const auto& [key, event] : events_) {
    const bool isOrphan = !view.tables.has("users", event.user);
    const bool isNew = event.stored > lastTrigger_ && view.tables.has("events", key);
    view.failIf(event.deliveries == 0 && !event.isDropped && !isOrphan && !isNew,
                "an event was never delivered:", key);
  }
}

}  // namespace pelorino
