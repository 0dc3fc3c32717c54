#pragma once

#include <algorithm>
#include <cstddef>
#include <deque>
#include <memory>
#include <vector>

#include "RowId.h"

namespace pelorino {

/// Shared models in ascending order of row id, which is the order of insertion. Adding at the end
/// and removing are amortized O(log n), wherever the row stands; walking costs what it gives, as
/// long as rows are removed from the front.
class RowList final {
 public:
  using Row = std::shared_ptr<void>;

  [[nodiscard]] std::size_t size() const { return size_; }

  /// Replaces a row of the same id.
  void set(RowId id, Row row);
  /// Null when there is none.
  [[nodiscard]] Row find(RowId id) const;
  void remove(RowId id);

  /// No more than `count`. All rows are of the type `Model`.
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

  /// The first row that `matches` holds for, null when there is none; nothing is copied on the way.
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
    Row row;
  };

  [[nodiscard]] std::size_t lowerBound(RowId id) const;
  [[nodiscard]] bool isAt(std::size_t place, RowId id) const;

  std::deque<Slot> slots_;
  std::size_t size_ = 0;
};

}  // namespace pelorino
