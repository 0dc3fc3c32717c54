#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <vector>

#include "RowList.h"

namespace pelorino {

/// The rows of a table in memory, found by row id and, where they have one, by owner. Reading costs
/// what is read, not the whole table.
class RowCache final {
 public:
  using Row = RowList::Row;
  using OwnerOf = RowId (*)(const void* model);

  /// `ownerOf` is null for rows without an owner.
  explicit RowCache(OwnerOf ownerOf) : ownerOf_(ownerOf) {}

  [[nodiscard]] const RowList& rows() const { return rows_; }
  /// The rows of one owner; an empty list where there are none.
  [[nodiscard]] const RowList& of(RowId owner) const;

  /// Takes the place of a row of the same id.
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
