#pragma once

#include <algorithm>
#include <cstddef>
#include <deque>
#include <memory>
#include <vector>

#include "RowId.h"

namespace pelorino {

/// Models in ascending order of row id, which is the order of insertion. Adding at the end and
/// removing anywhere take amortized O(log n). Reading the first rows takes time linear in their
/// number, if rows are removed from the front.
///
/// Threads: the incomeQueue only.
class RowList final {
 public:
  using Row = std::shared_ptr<void>;

  [[nodiscard]] std::size_t size() const { return size_; }

  /// Adds a row, or replaces the row of this id.
  void set(RowId id, Row row);
  /// Null when there is none.
  [[nodiscard]] Row find(RowId id) const;
  void remove(RowId id);

  /// The first `count` rows. `Model` must be the type of all rows.
  template <class Model>
  [[nodiscard]] std::vector<std::shared_ptr<Model>> first(std::size_t count) const {
    count = std::min(count, size_);
    std::vector<std::shared_ptr<Model>> rows;
    rows.reserve(count);
    for (auto slot = slots_.begin(); rows.size() < count; ++slot) {
      if (slot->row) rows.push_back(std::static_pointer_cast<Model>(slot->row));
    }
    return rows;
  }

  /// The first row for which `matches` is true; null when there is none.
  template <class Model, class Predicate>
  [[nodiscard]] std::shared_ptr<Model> findIf(Predicate matches) const {
    for (const Slot& slot : slots_) {
      if (slot.row && matches(*static_cast<const Model*>(slot.row.get()))) {
        return std::static_pointer_cast<Model>(slot.row);
      }
    }
    return nullptr;
  }

 private:
  struct Slot {
    RowId id;
    Row row;  ///< Null when the row has been removed.
  };

  [[nodiscard]] std::size_t lowerBound(RowId id) const;
  [[nodiscard]] bool isAt(std::size_t place, RowId id) const;

  std::deque<Slot> slots_;
  std::size_t size_ = 0;  ///< Of the slots, those with a row.
};

}  // namespace pelorino
