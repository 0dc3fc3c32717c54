#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Column.h"
#include "DatabaseProtocol.h"
#include "RowCache.h"
#include "SQLiteContracts.h"

namespace pelorino {

/// A table, read whole on first need and kept in memory: reads are served from the cache, writes go
/// to both. Nothing else writes to the table. Models are shared: a change of a field shows at once
/// to everyone who holds the model, and is stored by update().
///
/// `Columns` tells one table from another: its name, its columns, and its `owner` where its rows
/// have one.
///
/// Threads: the incomeQueue only.
/// Owns:    its cache, and a share of the database.
/// Errors:  none are reported but by insert(); the database has logged them.
template <class Model, class Columns>
class CachedRepository {
 public:
  using Item = std::shared_ptr<Model>;

  explicit CachedRepository(std::shared_ptr<DatabaseProtocol> with) : database_(std::move(with)) {}

  /// All rows, in order of insertion. Cost: the whole table.
  [[nodiscard]] std::vector<Item> list() { return loadedCache().all(); }

  /// The model with this row id; null when there is none.
  [[nodiscard]] Item get(RowId key) { return loadedCache().find(key); }

  /// Stores a model that is in no table yet and sets its `idKey`. False when it could not be
  /// stored: its `idKey` stays -1, and the cache does not know it.
  bool insert(const Item& item) {
    auto& cache = loadedCache();
    const auto rowId = database_->insert(Columns::tableName, prepareContetsValues(*item));
    if (!rowId) return false;
    item->idKey = *rowId;
    cache.set(item);
    return true;
  }

  /// Stores the fields of a model. In the cache it takes the place of the one with its row id.
  void update(const Item& item) {
    if (cache_.find(item->idKey)) cache_.set(item);
    const std::optional<SQLiteValue> idKey = item->idKey;
    database_->update(Columns::tableName, prepareContetsValues(*item), "id=?", {&idKey, 1});
  }

  /// Deletes the rows of the models. Those that cannot be deleted come back with the next process.
  void deleteItems(std::span<const Item> items) {
    if (items.empty()) return;
    std::vector<RowId> ids;
    ids.reserve(items.size());
    for (const Item& item : items) ids.push_back(item->idKey);
    deleteRows(ids, SQLiteContracts::BaseEntry::id, ",", ids);
  }

  /// Deletes all rows.
  void clear() {
    cache_.clear();
    isLoaded_ = false;
    database_->clear(Columns::tableName);
  }

 protected:
  ~CachedRepository() = default;

  RowCache<Model, Columns>& loadedCache() {
    if (!isLoaded_ && cache_.empty()) load();
    return cache_;
  }
  [[nodiscard]] const RowCache<Model, Columns>& cache() const { return cache_; }

  /// Takes `cached` out of the cache and deletes the rows that have one of `values` in `column`.
  void deleteRows(std::span<const RowId> cached, std::string_view column,
                  std::string_view separator, std::span<const RowId> values) {
    for (const RowId id : cached) cache_.remove(id);
    // Where this fails, say on a full disk, this process does not read the rows again: otherwise
    // reports that have been delivered would go out at every occasion.
    deleteFromTable(column, separator, values);
  }

 private:
  /// Null for a row that lacks what the model must have.
  static Item modelOf(const Cursor& cursor) {
    Item item = std::make_shared<Model>();
    int at = 0;
    for (const Column<Model>& column : Columns::columns()) {
      if (!column.read(*item, cursor, at++)) return nullptr;
    }
    return item;
  }

  void load() {
    isLoaded_ = database_->query({.tableName = Columns::tableName}, [this](const Cursor& cursor) {
      if (const Item item = modelOf(cursor)) cache_.set(item);
    });
  }

  /// All columns but the row id.
  static std::vector<ColumnValue> prepareContetsValues(const Model& item) {
    const auto written = Columns::columns().subspan(1);
    std::vector<ColumnValue> content;
    content.reserve(written.size());
    for (const Column<Model>& column : written) {
      content.push_back({column.name, column.write(item)});
    }
    return content;
  }

  /// In as many statements as the number of values takes.
  void deleteFromTable(std::string_view column, std::string_view separator,
                       std::span<const RowId> values) {
    do {
      const auto part = values.first(std::min(values.size(), database_->argumentLimit()));
      const std::vector<std::optional<SQLiteValue>> arguments(part.begin(), part.end());
      database_->deleteRows(Columns::tableName, isOneOf(column, separator, part.size()), arguments);
      values = values.subspan(part.size());
    } while (!values.empty());
  }

  static std::string isOneOf(std::string_view column, std::string_view separator,
                             std::size_t count) {
    std::string selection(column);
    selection += " IN (";
    for (std::size_t i = 0; i < count; ++i) {
      if (i > 0) selection += separator;
      selection += '?';
    }
    return selection += ')';
  }

  std::shared_ptr<DatabaseProtocol> database_;
  RowCache<Model, Columns> cache_;
  /// The table was read to its end, so an empty cache means an empty table.
  bool isLoaded_ = false;
};

/// A table whose rows belong to a user.
template <class Model, class Columns>
class UserRowsRepository : public CachedRepository<Model, Columns> {
 public:
  using CachedRepository<Model, Columns>::CachedRepository;
  using typename CachedRepository<Model, Columns>::Item;

  /// The user's rows, in order of insertion. Cost: the rows of that user.
  [[nodiscard]] std::vector<Item> ofUser(RowId userId) { return this->loadedCache().of(userId); }
  /// The first of them, no more than `count`. Cost: what it gives.
  [[nodiscard]] std::vector<Item> firstOfUser(RowId userId, std::size_t count) {
    return this->loadedCache().firstOf(userId, count);
  }
  [[nodiscard]] std::size_t countOfUser(RowId userId) {
    return this->loadedCache().countOf(userId);
  }

  /// Deletes all rows of these users.
  void deleteForDataForUsers(std::span<const RowId> ids) {
    std::vector<RowId> cached;
    for (const RowId id : ids) {
      for (const Item& item : this->cache().of(id)) cached.push_back(item->idKey);
    }
    this->deleteRows(cached, "userId", ", ", ids);
  }

 protected:
  ~UserRowsRepository() = default;
};

/// A table whose rows belong to a project.
template <class Model, class Columns>
class ProjectRowsRepository : public CachedRepository<Model, Columns> {
 public:
  using CachedRepository<Model, Columns>::CachedRepository;
  using typename CachedRepository<Model, Columns>::Item;

  /// The project's rows, in order of insertion. Cost: the rows of that project.
  [[nodiscard]] std::vector<Item> ofProject(RowId projectId) {
    return this->loadedCache().of(projectId);
  }

 protected:
  ~ProjectRowsRepository() = default;
};

}  // namespace pelorino
