#pragma once

#include <functional>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "DatabaseProtocol.h"

namespace pelorino {

/// The texts of the table operations.
struct SqlText final {
  static std::string select(const TableQuery& query);
  static std::string insert(std::string_view table, std::span<const ColumnValue> content);
  static std::string update(std::string_view table, std::span<const ColumnValue> values,
                            std::string_view selection);
  static std::string remove(std::string_view table, std::string_view selection);
};

/// Keeps, for each table, the text that was last composed for its rows: a table is written with
/// the same columns again and again.
///
/// Threads: one at a time.
class KeptSqlTexts final {
 public:
  using Compose = std::function<std::string()>;

  /// The kept text if it was composed for these columns and this selection, else a new one. Valid
  /// until the next call for the table.
  const std::string& text(std::string_view table, std::span<const ColumnValue> content,
                          std::string_view selection, const Compose& compose);

 private:
  struct Kept {
    std::vector<std::string> columns;
    std::string selection;
    std::string text;

    [[nodiscard]] bool fits(std::span<const ColumnValue> content,
                            std::string_view forSelection) const;
  };

  std::map<std::string, Kept, std::less<>> texts_;
};

}  // namespace pelorino
