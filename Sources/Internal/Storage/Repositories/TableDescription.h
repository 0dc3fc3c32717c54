#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

#include "RowId.h"
#include "SQLiteConvertible.h"

namespace pelorino {

/// What every table has: the row id, its first column.
struct BaseEntry {
  static constexpr std::string_view id = "id";
};

/// One further column of a table: its name, its SQL type with constraints, and the field of the
/// model that it holds.
struct Column {
  std::string_view name;
  std::string_view definition;
  /// False when the column does not hold what the model must have.
  bool (*read)(void* model, const Cursor& cursor, int at);
  std::optional<SQLiteValue> (*write)(const void* model);
  /// The version that gave the column to a table of an earlier one; 0 when the table was made with
  /// it.
  std::int64_t addingVersion = 0;

  [[nodiscard]] constexpr Column addedBy(std::int64_t version) const {
    Column column = *this;
    column.addingVersion = version;
    return column;
  }
};

template <auto Member>
struct MemberOf;

template <class Model_, class Field, Field Model_::*Member>
struct MemberOf<Member> {
  using Model = Model_;

  static bool read(void* model, const Cursor& cursor, int at) {
    auto field = SQLiteValueContertible<Field>::from(cursor, at);
    if (field) static_cast<Model*>(model)->*Member = std::move(*field);
    return field.has_value();
  }
  static std::optional<SQLiteValue> write(const void* model) {
    return SQLiteValueContertible<Field>::stored(static_cast<const Model*>(model)->*Member);
  }
};

/// A column that holds a field as the field's type says.
template <auto Member>
constexpr Column column(std::string_view name, std::string_view definition) {
  return {name, definition, MemberOf<Member>::read, MemberOf<Member>::write};
}

/// A column that is read and written by functions of its own.
template <class Model, bool (*Read)(Model&, const Cursor&, int at),
          std::optional<SQLiteValue> (*Write)(const Model&)>
constexpr Column column(std::string_view name, std::string_view definition) {
  return {name, definition,
          [](void* model, const Cursor& cursor, int at) {
            return Read(*static_cast<Model*>(model), cursor, at);
          },
          [](const void* model) { return Write(*static_cast<const Model*>(model)); }};
}

/// All that is told of one table. What makes the table and what reads and writes its rows follow
/// from it.
///
/// It knows the model's type in these small functions only; the cache and the SQL work on `void*`,
/// as code that all tables share. As templates over the model they took 118 kB more, of 170.
struct TableDescription {
  std::string_view name;
  /// Those behind the row id, in their order on disk, which is frozen: rows are read by it. A
  /// column may only ever be added at the end.
  std::span<const Column> columns;
  std::string_view constraint;  ///< Of the table as a whole; often empty.
  std::shared_ptr<void> (*make)();
  RowId& (*idKey)(void* model);
  /// The row id of the user or project that the row belongs to, which does not change while the row
  /// is stored; null for a table whose rows belong to nobody.
  RowId (*owner)(const void* model) = nullptr;
  std::string_view ownerColumn = {};
};

template <SQLiteConvertible Model>
constexpr TableDescription describeTable(std::string_view name, std::span<const Column> columns) {
  return {.name = name,
          .columns = columns,
          .constraint = {},
          .make = []() -> std::shared_ptr<void> { return std::make_shared<Model>(); },
          .idKey = [](void* model) -> RowId& { return static_cast<Model*>(model)->idKey; }};
}

/// The same for a table whose rows belong to the user or project that the member `Owner` names.
template <auto Owner>
constexpr TableDescription describeOwnedTable(std::string_view name,
                                              std::span<const Column> columns,
                                              std::string_view constraint = {}) {
  using Model = typename MemberOf<Owner>::Model;
  TableDescription table = describeTable<Model>(name, columns);
  table.constraint = constraint;
  table.owner = [](const void* model) -> RowId { return static_cast<const Model*>(model)->*Owner; };
  for (const Column& column : columns) {
    if (column.read == MemberOf<Owner>::read) table.ownerColumn = column.name;
  }
  return table;
}

}  // namespace pelorino
