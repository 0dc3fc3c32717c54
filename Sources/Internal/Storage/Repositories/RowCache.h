#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <vector>

#include "RowList.h"

namespace pelorino {

/// The rows of a table in memory, by row id and, if the table has owners, by owner. Finding the
/// rows of one owner does not walk the whole table.
///
/// Threads: the incomeQueue only.
class RowCache final {
 public:
  using Row = RowList::Row;
  using OwnerOf = RowId (*)(const void* model);

  /// `ownerOf` is null for a table without owners. The owner of a row must not change.
  explicit RowCache(OwnerOf ownerOf) : ownerOf_(ownerOf) {}

  [[nodiscard]] const RowList& rows() const { return rows_; }
  /// The rows of one owner; an empty list if there are none.
  [[nodiscard]] const RowList& of(RowId owner) const;

  /// Adds a row, or replaces the row of this id.
  void set(RowId id, const Row& row);
  void remove(RowId id);
  void clear();

 private:
  void removeOwned(const Row& row, RowId id);

  OwnerOf ownerOf_;
  RowList rows_;
  std::map<RowId, RowList> owned_;
};

}  // namespace pelorino
