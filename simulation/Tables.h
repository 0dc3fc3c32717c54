#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "Record.h"
#include "Repositories.h"

namespace pelorino {

using RowKey = std::int64_t;

/// Where the column stands in the rows of the table. Throws for a name that the table lacks.
[[nodiscard]] std::size_t placeOf(const TableDescription& table, std::string_view column);

/// The named column of a row of `Entry`'s table.
template <class Entry>
[[nodiscard]] const Cell& cell(const Row& row, std::string_view column) {
  return row[placeOf(Entry::table, column)];
}

/// One row that a statement changes: its columns afterwards, none for a deleted one.
struct Change {
  std::string verb;
  std::string table;
  RowKey key = 0;
  Row row;
};

/// The rows of the tables that the rules are about.
class Tables final {
 public:
  using Table = std::map<RowKey, Row>;

  /// Reads the database file past the library, as the next process will: a statement that was cut
  /// short is undone by that. Empty tables where there is no database yet.
  [[nodiscard]] static Tables read(const std::string& path);

  [[nodiscard]] const Table& of(const std::string& table) const;
  [[nodiscard]] bool has(const std::string& table, RowKey key) const {
    return of(table).contains(key);
  }
  [[nodiscard]] const Row* find(const std::string& table, RowKey key) const;

  void apply(const Change& change);

  friend bool operator==(const Tables&, const Tables&) = default;

 private:
  std::map<std::string, Table> tables_;
};

}  // namespace pelorino
