#include "RowList.h"

#include <utility>

namespace pelorino {
namespace {

constexpr std::size_t fewSlots = 16;  ///< So few empty slots are not worth a clean-up.

}  // namespace

void RowList::set(RowId id, Row row) {
  const std::size_t place = lowerBound(id);
  if (!isAt(place, id)) {
    slots_.insert(slots_.begin() + static_cast<std::ptrdiff_t>(place), Slot{id, nullptr});
  }
  Row& slot = slots_[place].row;
  if (!slot) ++size_;
  slot = std::move(row);
}

RowList::Row RowList::find(RowId id) const {
  const std::size_t place = lowerBound(id);
  return isAt(place, id) ? slots_[place].row : nullptr;
}

void RowList::remove(RowId id) {
  const std::size_t place = lowerBound(id);
  if (!isAt(place, id) || !slots_[place].row) return;
  slots_[place].row.reset();
  --size_;
  // A removed row leaves an empty slot: moving the rows behind it each time would be slow. Empty
  // slots at the front go at once, the others when they are more than the rows.
  while (!slots_.empty() && !slots_.front().row) slots_.pop_front();
  if (slots_.size() > 2 * size_ + fewSlots) {
    std::erase_if(slots_, [](const Slot& slot) { return !slot.row; });
  }
}

std::size_t RowList::lowerBound(RowId id) const {
  // The common case: a new row belongs at the end.
  if (slots_.empty() || slots_.back().id < id) return slots_.size();
  const auto place = std::ranges::lower_bound(slots_, id, {}, &Slot::id);
  return static_cast<std::size_t>(place - slots_.begin());
}

bool RowList::isAt(std::size_t place, RowId id) const {
  return place < slots_.size() && slots_[place].id == id;
}

}  // namespace pelorino
