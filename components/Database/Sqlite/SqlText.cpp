#include "SqlText.h"

#include <fmt/format.h>

#include <vector>

namespace pelorino {

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

std::string SqlText::insert(std::string_view table, std::span<const std::string_view> columns) {
  const std::vector<std::string_view> parameters(columns.size(), "?");
  return fmt::format("INSERT INTO {} ({}) VALUES({})", table, fmt::join(columns, ", "),
                     fmt::join(parameters, ", "));
}

std::string SqlText::update(std::string_view table, std::span<const std::string_view> columns,
                            std::string_view selection) {
  return fmt::format("UPDATE {} SET {}=? WHERE {}", table, fmt::join(columns, "=?, "), selection);
}

std::string SqlText::remove(std::string_view table, std::string_view selection) {
  if (selection.empty()) return fmt::format("DELETE FROM {}", table);
  return fmt::format("DELETE FROM {} WHERE {}", table, selection);
}

}  // namespace pelorino
