#include "CachedTable.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>

#include "SqlText.h"

namespace pelorino {
namespace {

/// The statements name all columns but the row id, in their order.
TableStatements statementsOf(const TableDescription& description) {
  std::vector<std::string_view> columns;
  for (const Column& column : description.columns) columns.push_back(column.name);
  return {.tableName = description.name,
          .insert = SqlText::insert(description.name, columns),
          .update = SqlText::update(description.name, columns, "id=?")};
}

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

CachedTable::CachedTable(const TableDescription& description, DatabaseProtocol& database)
    : description_(description),
      statements_(statementsOf(description)),
      database_(database),
      cache_(description.owner) {}

const RowCache& CachedTable::rows() {
  // After a failed read it tries again, but only while the cache is empty: a second read would
  // replace models that others hold.
  if (!isLoaded_ && cache_.rows().size() == 0) load();
  return cache_;
}

bool CachedTable::insert(const Row& row) {
  static_cast<void>(rows());  // Load first, or the new row would be read a second time.
  const auto rowId = database_.insert(statements_, prepareContetsValues(row.get()));
  if (!rowId) return false;
  idOf(row) = *rowId;
  cache_.set(*rowId, row);
  return true;
}

void CachedTable::update(RowId id, const void* model) {
  auto values = prepareContetsValues(model);
  values.emplace_back(id);  // The last argument of the statement: "id=?".
  database_.update(statements_, values);
}

bool CachedTable::remove(std::span<const RowId> ids) {
  if (ids.empty()) return true;
  // From memory first, even if the deletion then fails, for example on a full disk. Otherwise
  // delivered reports would be sent again and again.
  for (const RowId id : ids) cache_.remove(id);
  return deleteRows(BaseEntry::id, ",", ids) == static_cast<std::int64_t>(ids.size());
}

void CachedTable::removeOfOwners(std::span<const RowId> owners) {
  for (const RowId owner : owners) {
    const RowList& rows = cache_.of(owner);
    // Over a copy: removing changes the list.
    for (const Row& row : rows.first<void>(rows.size())) cache_.remove(idOf(row));
  }
  deleteRows(description_.ownerColumn, ", ", owners);
}

void CachedTable::clear() {
  cache_.clear();
  isLoaded_ = false;
  database_.clear(description_.name);
}

void CachedTable::load() {
  isLoaded_ = database_.query({.tableName = description_.name}, [this](const Cursor& cursor) {
    if (const Row row = rowOf(cursor)) cache_.set(idOf(row), row);
  });
}

/// Null if a required value is missing in the row.
CachedTable::Row CachedTable::rowOf(const Cursor& cursor) const {
  int at = 0;
  const auto id = cursor.integer(at);
  if (!id) return nullptr;
  Row row = description_.make();
  idOf(row) = *id;
  for (const Column& column : description_.columns) {
    if (!column.read(row.get(), cursor, ++at)) return nullptr;
  }
  return row;
}

/// The values of all columns but the row id. Reserves room for the row id at the end.
std::vector<std::optional<SQLiteValue>> CachedTable::prepareContetsValues(const void* model) const {
  std::vector<std::optional<SQLiteValue>> values;
  values.reserve(description_.columns.size() + 1);
  for (const Column& column : description_.columns) values.push_back(column.write(model));
  return values;
}

/// Returns the number of deleted rows. Many values take several statements: SQLite limits the
/// arguments of one.
std::int64_t CachedTable::deleteRows(std::string_view column, std::string_view separator,
                                     std::span<const RowId> values) {
  std::int64_t deleted = 0;
  do {
    const auto part = values.first(std::min(values.size(), database_.argumentLimit()));
    const std::vector<std::optional<SQLiteValue>> arguments(part.begin(), part.end());
    deleted +=
        database_.deleteRows(description_.name, isOneOf(column, separator, part.size()), arguments);
    values = values.subspan(part.size());
  } while (!values.empty());
  return deleted;
}

}  // namespace pelorino
