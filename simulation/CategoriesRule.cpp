#include "Rules.h"

namespace pelorino {

using Kind = Record::Kind;

CategoriesRule::Ids CategoriesRule::stored(const View& view) {
  Ids ids;
  for (const auto& [key, row] : view.tables.of("messagingCategory")) {
    ids.insert(*cell<MessagingCategoryEntry>(row, "identifier"));
  }
  return ids;
}

void CategoriesRule::onStart(View& view) {
  pending_.clear();
  before_ = stored(view);
}

void CategoriesRule::onRecord(const Record& record, View& view) {
  view.failIf(record.kind == Kind::settled && !pending_.empty() && !view.isInDoubt("projects"),
              "an answer with categories is not stored");
  if (record.kind != Kind::request || !record.text(0).ends_with("/messaging/config")) return;
  boost::json::error_code isGarbage;
  const auto body = boost::json::parse(record.text(5), isGarbage);
  if (record.text(3) != "answered" || isGarbage) return;
  const auto& changes = body.at("pushCategories");
  Answer answer{.version = changes.at("version").as_int64(), .added = {}, .removed = {}};
  for (const auto& category : changes.at("categories").as_array()) {
    answer.added.insert(boost::json::value_to<std::string>(category.at("id")));
  }
  for (const auto& id : changes.at("removed").as_array()) {
    answer.removed.insert(boost::json::value_to<std::string>(id));
  }
  pending_.push_back(std::move(answer));
}

void CategoriesRule::onStatement(const StatementRecord& statement, bool isKept, View& view) {
  view.failIf(isKept && statement.table == "messagingCategory" && pending_.empty(),
              "categories change without an answer");
  if (!isKept || !statement.is("UPDATE", "projects")) return;
  for (const Change& change : statement.changes) {
    const Row* before = view.tables.find("projects", change.key);
    const Cell& version = cell<ProjectEntry>(change.row, "categoriesVersion");
    if (before == nullptr || cell<ProjectEntry>(*before, "categoriesVersion") == version) continue;
    finish(integer(version), view);
  }
}

void CategoriesRule::finish(std::int64_t version, const View& view) {
  while (!pending_.empty() && pending_.front().version < version) {
    view.failIf(!view.isInDoubt("projects"), "an answer with categories is passed over");
    pending_.pop_front();
  }
  if (pending_.empty() || pending_.front().version != version) {
    return view.fail("a version of the categories that no answer has told");
  }
  Ids expected = before_;
  for (const std::string& id : pending_.front().added) {
    if (!expected.contains(id)) expected.insert(id);
  }
  // What one answer adds and removes stays: it has had no row to remove.
  for (const std::string& id : pending_.front().removed) {
    if (before_.contains(id)) expected.erase(id);
  }
  pending_.pop_front();
  before_ = stored(view);
  const bool isKnown = !view.isInDoubt("projects") && !view.isInDoubt("messagingCategory");
  view.failIf(isKnown && before_ != expected, "the categories are not those of the answer");
}

}  // namespace pelorino
