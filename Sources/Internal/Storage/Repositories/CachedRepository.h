#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include "CachedTable.h"

namespace pelorino {

/// The models of the table that `Entry` describes. They are shared: everyone who holds a model sees
/// a change of it at once. update() stores the change.
///
/// Threads: the incomeQueue only.
/// Owns:    a cache of the models; the database is borrowed.
/// Errors:  logged by the database. Reading then gives fewer rows.
template <class Model, class Entry>
class CachedRepository {
 public:
  using Item = std::shared_ptr<Model>;

  explicit CachedRepository(DatabaseProtocol& with) : table_(Entry::table, with) {}

  /// All rows, in order of insertion. Cost: the whole table.
  [[nodiscard]] std::vector<Item> list() {
    const RowList& rows = table_.rows().rows();
    return rows.first<Model>(rows.size());
  }

  /// The model with this row id; null when there is none.
  [[nodiscard]] Item get(RowId key) {
    return std::static_pointer_cast<Model>(table_.rows().rows().find(key));
  }

  /// Stores a model that is in no table yet and sets its `idKey`. If that fails, it returns false,
  /// `idKey` stays -1, and the cache does not contain the model.
  bool insert(const Item& item) { return table_.insert(item); }

  /// Stores the fields of a model that has been inserted. If that fails, the model keeps the change
  /// in memory.
  void update(const Model& model) { table_.update(model.idKey, &model); }

  /// Deletes the rows of the models. If it returns false, some rows are gone from memory only, and
  /// the next start reads them again.
  bool deleteItems(std::span<const Item> items) {
    std::vector<RowId> ids;
    ids.reserve(items.size());
    for (const Item& item : items) ids.push_back(item->idKey);
    return table_.remove(ids);
  }

  /// Deletes all rows.
  void clear() { table_.clear(); }

 protected:
  CachedTable table_;
};

/// A table whose rows belong to a user.
template <class Model, class Entry>
class UserRowsRepository : public CachedRepository<Model, Entry> {
 public:
  using CachedRepository<Model, Entry>::CachedRepository;
  using typename CachedRepository<Model, Entry>::Item;

  /// The user's rows, in order of insertion. Cost: the rows of that user.
  [[nodiscard]] std::vector<Item> ofUser(RowId userId) {
    return firstOfUser(userId, countOfUser(userId));
  }
  /// The first `count` of them. Cost: the rows that it returns.
  [[nodiscard]] std::vector<Item> firstOfUser(RowId userId, std::size_t count) {
    return this->table_.rows().of(userId).template first<Model>(count);
  }
  /// The first of them for which `matches` is true; null when there is none.
  template <class Predicate>
  [[nodiscard]] Item findOfUser(RowId userId, Predicate matches) {
    return this->table_.rows().of(userId).template findIf<Model>(matches);
  }
  /// The first of them; null when there is none.
  [[nodiscard]] Item findOfUser(RowId userId) {
    return findOfUser(userId, [](const Model&) { return true; });
  }
  [[nodiscard]] std::size_t countOfUser(RowId userId) {
    return this->table_.rows().of(userId).size();
  }

  /// Deletes all rows of these users.
  void deleteForDataForUsers(std::span<const RowId> ids) { this->table_.removeOfOwners(ids); }
};

/// A table whose rows belong to a project.
template <class Model, class Entry>
class ProjectRowsRepository : public CachedRepository<Model, Entry> {
 public:
  using CachedRepository<Model, Entry>::CachedRepository;
  using typename CachedRepository<Model, Entry>::Item;

  /// The project's rows, in order of insertion. Cost: the rows of that project.
  [[nodiscard]] std::vector<Item> ofProject(RowId projectId) {
    const RowList& rows = this->table_.rows().of(projectId);
    return rows.template first<Model>(rows.size());
  }
  /// The first of them for which `matches` is true; null when there is none.
  template <class Predicate>
  [[nodiscard]] Item findOfProject(RowId projectId, Predicate matches) {
    return this->table_.rows().of(projectId).template findIf<Model>(matches);
  }
};

}  // namespace pelorino
