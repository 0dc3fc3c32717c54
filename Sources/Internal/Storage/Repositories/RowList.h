#pragma once

#include <algorithm>
#include <cstddef>
#include <deque>
#include <memory>
#include <vector>

#include "SQLiteValue.h"

namespace pelorino {

/// Shared models in ascending order of row id, which is the order of insertion. Adding at the end
/// and removing are amortized O(log n), wherever the row stands; walking costs what it gives, as
/// long as rows are removed from the front.
template <class Model>
class RowList final {
 public:
  using Item = std::shared_ptr<Model>;

  [[nodiscard]] std::size_t size() const { return size_; }

  /// Replaces an item of the same id.
  void set(RowId id, Item item) {
    auto place = lowerBound(id);
    if (place == slots_.end() || place->id != id) place = slots_.insert(place, Slot{id, {}});
    if (!place->item) ++size_;
    place->item = std::move(item);
  }

  /// Null when there is none.
  [[nodiscard]] Item find(RowId id) const {
    const auto place = lowerBound(id);
    return place == slots_.end() || place->id != id ? nullptr : place->item;
  }

  void remove(RowId id) {
    const auto place = lowerBound(id);
    if (place == slots_.end() || place->id != id || !place->item) return;
    place->item.reset();
    --size_;
    // A removed row leaves its slot behind, except at the front; slots are dropped when they are
    // the greater part.
    while (!slots_.empty() && !slots_.front().item) slots_.pop_front();
    if (slots_.size() > 2 * size_ + fewSlots) {
      std::erase_if(slots_, [](const Slot& slot) { return !slot.item; });
    }
  }

  [[nodiscard]] std::vector<Item> all() const { return first(size_); }

  /// No more than `count`.
  [[nodiscard]] std::vector<Item> first(std::size_t count) const {
    count = std::min(count, size_);
    std::vector<Item> items;
    items.reserve(count);
    for (auto slot = slots_.begin(); items.size() < count; ++slot) {
      if (slot->item) items.push_back(slot->item);
    }
    return items;
  }

 private:
  struct Slot {
    RowId id;
    Item item;
  };
  static constexpr std::size_t fewSlots = 16;

  [[nodiscard]] auto lowerBound(RowId id) const { return lowerBound(slots_, id); }
  [[nodiscard]] auto lowerBound(RowId id) { return lowerBound(slots_, id); }

  template <class Slots>
  static auto lowerBound(Slots& slots, RowId id) {
    // New rows come at the end.
    if (slots.empty() || slots.back().id < id) return slots.end();
    return std::lower_bound(slots.begin(), slots.end(), id,
                            [](const Slot& slot, RowId wanted) { return slot.id < wanted; });
  }

  std::deque<Slot> slots_;
  std::size_t size_ = 0;
};

}  // namespace pelorino
