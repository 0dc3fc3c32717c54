#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "RowList.h"

namespace pelorino {

/// A table whose rows belong to a user or a project: `Columns::owner` is the field of the model
/// that holds its row id. It does not change while a model is stored.
template <class Columns>
concept OwnedRows = requires {
  Columns::owner;
};

/// The rows of a table in memory, found by row id and, where they have one, by owner. Reading costs
/// what is read, not the whole table.
template <class Model, class Columns>
class RowCache final {
 public:
  using Item = std::shared_ptr<Model>;

  [[nodiscard]] bool empty() const { return rows_.size() == 0; }
  [[nodiscard]] std::vector<Item> all() const { return rows_.all(); }
  [[nodiscard]] Item find(RowId id) const { return rows_.find(id); }

  [[nodiscard]] std::vector<Item> of(RowId owner) const { return firstOf(owner, countOf(owner)); }

  [[nodiscard]] std::vector<Item> firstOf(RowId owner, std::size_t count) const {
    const auto found = owned_.find(owner);
    return found == owned_.end() ? std::vector<Item>() : found->second.first(count);
  }

  [[nodiscard]] std::size_t countOf(RowId owner) const {
    const auto found = owned_.find(owner);
    return found == owned_.end() ? 0 : found->second.size();
  }

  /// Takes the place of a row of the same id.
  void set(const Item& item) {
    const RowId id = item->idKey;
    if constexpr (OwnedRows<Columns>) {
      if (const Item old = rows_.find(id)) removeOwned(*old, id);
      owned_[(*item).*Columns::owner].set(id, item);
    }
    rows_.set(id, item);
  }

  void remove(RowId id) {
    if constexpr (OwnedRows<Columns>) {
      const Item item = rows_.find(id);
      if (item) removeOwned(*item, id);
    }
    rows_.remove(id);
  }

  void clear() { *this = RowCache(); }

 private:
  void removeOwned(const Model& item, RowId id) {
    const auto found = owned_.find(item.*Columns::owner);
    if (found == owned_.end()) return;
    found->second.remove(id);
    if (found->second.size() == 0) owned_.erase(found);
  }

  RowList<Model> rows_;
  std::map<RowId, RowList<Model>> owned_;
};

}  // namespace pelorino
