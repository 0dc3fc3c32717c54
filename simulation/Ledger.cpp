#include "Ledger.h"

#include <utility>

#include "Rules.h"

namespace pelorino {

Ledger::Ledger() {
  view_.fail = [this](const std::string& finding) { findings_.push_back(finding); };
  rules_.push_back(std::make_unique<DeliveryRule>());
  rules_.push_back(std::make_unique<AccrualRule>());
  rules_.push_back(std::make_unique<ActivityRule>());
  rules_.push_back(std::make_unique<TraceRule>());
  rules_.push_back(std::make_unique<AnswerRule>());
  rules_.push_back(std::make_unique<CategoriesRule>());
  rules_.push_back(std::make_unique<MigrationRule>());
}

std::int64_t Ledger::sessionTimeout() const {
  return view_.configured("/sessionTimeout").value_or(600'000).as_int64();
}

void Ledger::beginLife() {
  ++view_.life;
  view_.exclusions.clear();
  view_.areExclusionsKnown = true;
  calls_.clear();
  start();
}

void Ledger::start() {
  ++view_.start;
  view_.isTornDown = false;
  view_.doubts.clear();
  for (const auto& rule : rules_) rule->onStart(view_);
}

void Ledger::apply(const Record& record) {
  using Kind = Record::Kind;
  const bool isError =
      record.kind == Kind::log && record.text(0).starts_with("ERROR [Database Module] Error in");
  if (statement_.isEnded) endStatement(isError);
  view_.time = record.time;
  if (isError) {
    view_.isErrorLogged = true;
    doubt(std::exchange(statement_, {}));
  }
  if (record.kind == Kind::callBegins) {
    view_.call = calls_.at(record.text(0));
    view_.isErrorLogged = false;
    if (view_.call->name == "destroySDK") view_.isTornDown = true;
  }
  if (record.kind == Kind::log) log(record.text(0));
  for (const auto& rule : rules_) rule->onRecord(record, view_);
  switch (record.kind) {
    case Kind::hostCall:
      calls_[record.text(0)] = {record.text(0), record.text(1),
                                Row(record.fields.begin() + 2, record.fields.end())};
      break;
    case Kind::callEnds:
      view_.call.reset();
      break;
    case Kind::statement:
      statement_ = {.verb = record.text(0), .table = record.text(1), .isBegun = true};
      break;
    case Kind::rowChange:
      statement_.changes.push_back({record.text(0), record.text(1), std::stoll(record.text(2)),
                                    Row(record.fields.begin() + 3, record.fields.end())});
      break;
    case Kind::statementEnds:
      statement_.isEnded = true;
      statement_.isKept = record.text(0) == "kept";
      break;
    case Kind::finding:
      view_.fail(record.text(0));
      break;
    default:
      break;
  }
}

void Ledger::log(const std::string& line) {
  if (line == "DEBUG [Database Module] Trying to load database") start();
  if (line.starts_with("DEBUG The SDK analytics configuration has been received")) {
    view_.areExclusionsKnown = !view_.isInDoubt("projects");
    view_.exclusions =
        view_.configured("/exclude/events").value_or(boost::json::object()).as_object();
  }
}

/// What a failed statement leaves open. Those on events, reports and sums are accounted for row by
/// row; a table that could not be read may be remembered in part.
void Ledger::doubt(const StatementRecord& statement) {
  const bool isAccountedFor = statement.table == "events" || statement.table == "reports" ||
                              statement.table == "currencyAccrualResources";
  if (!isAccountedFor) view_.doubts.insert(statement.table.empty() ? "*" : statement.table);
}

/// A statement that has changed nothing may have failed without anything to undo: the line that
/// follows tells.
void Ledger::endStatement(bool isErrorNext) {
  statement_.isBegun = statement_.isEnded = false;
  const bool isFailed = isErrorNext && statement_.changes.empty();
  const bool isKept = statement_.isKept && !isFailed;
  for (const auto& rule : rules_) rule->onStatement(statement_, isKept, view_);
  if (isKept) {
    for (const Change& change : statement_.changes) view_.tables.apply(change);
    statement_ = {};
  }
}

void Ledger::endLife(const std::string& databasePath) {
  if (statement_.isEnded) endStatement(false);
  const Tables left = Tables::read(databasePath);
  if (left != view_.tables && statement_.isBegun) {  // Cut short, but durable.
    statement_.isKept = true;
    endStatement(false);
  }
  view_.failIf(left != view_.tables, "the database is not what its statements have made of it");
  view_.tables = left;
  statement_ = {};
  for (const auto& rule : rules_) rule->onEndOfLife(view_);
  view_.call.reset();
}

void Ledger::endPlay() {
  for (const auto& rule : rules_) rule->onEndOfPlay(view_);
}

}  // namespace pelorino
