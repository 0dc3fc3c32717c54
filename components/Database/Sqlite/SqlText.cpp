#include "SqlText.h"

#include <fmt/format.h>

#include <algorithm>

namespace pelorino {
namespace {

/// `each` of every column, joined by ", ".
template <class Each>
std::string joined(std::span<const ColumnValue> columns, Each each) {
  std::string text;
  for (const auto& column : columns) {
    if (!text.empty()) text += ", ";
    text += each(column.column);
  }
  return text;
}

}  // namespace

std::string SqlText::select(const TableQuery& query) {
  std::string sql = fmt::format(
      "SELECT {} FROM {}",
      query.projection.empty() ? "*" : fmt::format("{}", fmt::join(query.projection, ",")),
      query.tableName);
  if (query.join) sql.append(" JOIN ").append(*query.join);
  if (query.selection) sql.append(" WHERE ").append(*query.selection);
  if (query.groupBy) sql.append(" GROUP BY ").append(*query.groupBy);
  if (query.sortOrder) sql.append(" ORDER BY ").append(*query.sortOrder);
  if (query.limit) sql.append(" LIMIT ").append(std::to_string(*query.limit));
  return sql;
}

std::string SqlText::insert(std::string_view table, std::span<const ColumnValue> content) {
  return fmt::format("INSERT INTO {} ({}) VALUES({})", table,
                     joined(content, [](std::string_view column) { return column; }),
                     joined(content, [](std::string_view) { return "?"; }));
}

std::string SqlText::update(std::string_view table, std::span<const ColumnValue> values,
                            std::string_view selection) {
  return fmt::format(
      "UPDATE {} SET {} WHERE {}", table,
      joined(values, [](std::string_view column) { return fmt::format("{}=?", column); }),
      selection);
}

std::string SqlText::remove(std::string_view table, std::string_view selection) {
  if (selection.empty()) return fmt::format("DELETE FROM {}", table);
  return fmt::format("DELETE FROM {} WHERE {}", table, selection);
}

const std::string& KeptSqlTexts::text(std::string_view table, std::span<const ColumnValue> content,
                                      std::string_view selection, const Compose& compose) {
  auto found = texts_.find(table);
  if (found == texts_.end()) found = texts_.emplace(table, Kept{}).first;
  Kept& kept = found->second;
  if (kept.text.empty() || !kept.fits(content, selection)) {
    kept.columns.clear();
    for (const auto& column : content) kept.columns.emplace_back(column.column);
    kept.selection = selection;
    kept.text = compose();
  }
  return kept.text;
}

bool KeptSqlTexts::Kept::fits(std::span<const ColumnValue> content,
                              std::string_view forSelection) const {
  return selection == forSelection &&
         std::equal(columns.begin(), columns.end(), content.begin(), content.end(),
                    [](const std::string& kept, const ColumnValue& given) {
                      return kept == given.column;
                    });
}

}  // namespace pelorino
