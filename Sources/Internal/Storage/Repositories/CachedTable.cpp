#include "CachedTable.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>

#include "SQLiteContracts.h"

namespace pelorino {
namespace {

constexpr std::string_view idColumn = SQLiteContracts::BaseEntry::id;

std::string isOneOf(std::string_view column, std::string_view separator, std::size_t count) {
  std::string selection(column);
  selection += " IN (";
  for (std::size_t i = 0; i < count; ++i) {
    if (i > 0) selection += separator;
    selection += '?';
  }
  return selection += ')';
}

}  // namespace

CachedTable::CachedTable(const TableDescription& description,
                         std::shared_ptr<DatabaseProtocol> database)
    : description_(description), database_(std::move(database)), cache_(description.owner) {}

const RowCache& CachedTable::rows() {
  if (!isLoaded_ && cache_.rows().size() == 0) load();
  return cache_;
}

bool CachedTable::insert(const Row& row) {
  static_cast<void>(rows());  // Read before the row is in the table.
  const auto rowId = database_->insert(description_.name, prepareContetsValues(row));
  if (!rowId) return false;
  idOf(row) = *rowId;
  cache_.set(*rowId, row);
  return true;
}

void CachedTable::update(const Row& row) {
  const RowId id = idOf(row);
  if (cache_.rows().find(id)) cache_.set(id, row);
  const std::optional<SQLiteValue> idKey = id;
  database_->update(description_.name, prepareContetsValues(row), "id=?", {&idKey, 1});
}

bool CachedTable::remove(std::span<const RowId> ids) {
  if (ids.empty()) return true;
  // Where the deletion fails, say on a full disk, this library does not read the rows again:
  // otherwise reports that have been delivered would go out at every occasion.
  for (const RowId id : ids) cache_.remove(id);
  return deleteRows(idColumn, ",", ids) == static_cast<std::int64_t>(ids.size());
}

void CachedTable::removeOfOwners(std::span<const RowId> owners, std::string_view ownerColumn) {
  for (const RowId owner : owners) {
    const RowList& rows = cache_.of(owner);
    for (const Row& row : rows.first<void>(rows.size())) cache_.remove(idOf(row));
  }
  deleteRows(ownerColumn, ", ", owners);
}

void CachedTable::clear() {
  cache_.clear();
  isLoaded_ = false;
  database_->clear(description_.name);
}

void CachedTable::load() {
  isLoaded_ = database_->query({.tableName = description_.name}, [this](const Cursor& cursor) {
    if (const Row row = rowOf(cursor)) cache_.set(idOf(row), row);
  });
}

/// Null for a row that lacks what the model must have.
CachedTable::Row CachedTable::rowOf(const Cursor& cursor) const {
  Row row = description_.make();
  int at = 0;
  for (const Column& column : description_.columns) {
    if (!column.read(row.get(), cursor, at++)) return nullptr;
  }
  return row;
}

/// All columns but the row id.
std::vector<ColumnValue> CachedTable::prepareContetsValues(const Row& row) const {
  const auto written = description_.columns.subspan(1);
  std::vector<ColumnValue> content;
  content.reserve(written.size());
  for (const Column& column : written) content.push_back({column.name, column.write(row.get())});
  return content;
}

/// In as many statements as the number of values takes. Returns how many rows have gone.
std::int64_t CachedTable::deleteRows(std::string_view column, std::string_view separator,
                                     std::span<const RowId> values) {
  std::int64_t deleted = 0;
  do {
    const auto part = values.first(std::min(values.size(), database_->argumentLimit()));
    const std::vector<std::optional<SQLiteValue>> arguments(part.begin(), part.end());
    deleted += database_->deleteRows(description_.name, isOneOf(column, separator, part.size()),
                                     arguments);
    values = values.subspan(part.size());
  } while (!values.empty());
  return deleted;
}

}  // namespace pelorino
