#include "RowCache.h"

namespace pelorino {

const RowList& RowCache::of(RowId owner) const {
  // Never destroyed: the incomeQueue may still run while the process exits.
  static const auto& none = *new RowList;
  const auto found = owned_.find(owner);
  return found == owned_.end() ? none : found->second;
}

void RowCache::set(RowId id, const Row& row) {
  if (ownerOf_ != nullptr) {
    // The row that is replaced may have another owner.
    if (const Row old = rows_.find(id)) removeOwned(old, id);
    owned_[ownerOf_(row.get())].set(id, row);
  }
  rows_.set(id, row);
}

void RowCache::remove(RowId id) {
  if (ownerOf_ != nullptr) {
    if (const Row row = rows_.find(id)) removeOwned(row, id);
  }
  rows_.remove(id);
}

void RowCache::clear() {
  *this = RowCache(ownerOf_);
}

void RowCache::removeOwned(const Row& row, RowId id) {
  const auto found = owned_.find(ownerOf_(row.get()));
  if (found == owned_.end()) return;
  found->second.remove(id);
  if (found->second.size() == 0) owned_.erase(found);  // Owners come and go; do not keep them all.
}

}  // namespace pelorino
