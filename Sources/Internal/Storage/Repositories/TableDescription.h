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

/// What all tables have in common: the first column is the row id.
struct BaseEntry {
  static constexpr std::string_view id = "id";
};

/// A column of a table, except the row id: its name, its SQL type with constraints, and how it is
/// read from and written to a model.
struct Column {
  std::string_view name;
  std::string_view definition;
  /// False when a required value is missing.
  bool (*read)(void* model, const Cursor& cursor, int at);
  std::optional<SQLiteValue> (*write)(const void* model);
  /// The schema version that added the column to an older table; 0 if the table began with it.
  std::int64_t addingVersion = 0;

  [[nodiscard]] constexpr Column addedBy(std::int64_t version) const {
    Column column = *this;
    column.addingVersion = version;
    return column;
  }
};

/// Reads and writes one member of a model, given as a pointer to member.
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

/// A column for one field. SQLiteValueContertible of the field's type decides how it is stored.
template <auto Member>
constexpr Column column(std::string_view name, std::string_view definition) {
  return {name, definition, MemberOf<Member>::read, MemberOf<Member>::write};
}

/// A column with its own functions for reading and writing.
template <class Model, bool (*Read)(Model&, const Cursor&, int at),
          std::optional<SQLiteValue> (*Write)(const Model&)>
constexpr Column column(std::string_view name, std::string_view definition) {
  return {name, definition,
          [](void* model, const Cursor& cursor, int at) {
            return Read(*static_cast<Model*>(model), cursor, at);
          },
          [](const void* model) { return Write(*static_cast<const Model*>(model)); }};
}

/// The description of one table, from which all its SQL statements follow, and how its rows are
/// read. A constant; any thread.
///
/// Only these small functions know the model's type. The cache and the SQL code use `void*`, and
/// all tables share them. As templates they made the library's code 118 kB larger, of 170 kB.
struct TableDescription {
  std::string_view name;
  /// The columns after the row id, in their order in the file. The order is frozen: rows are read
  /// by position. New columns may only be added at the end.
  std::span<const Column> columns;
  std::string_view constraint;  ///< Of the whole table; empty if there is none.
  std::shared_ptr<void> (*make)();
  RowId& (*idKey)(void* model);
  /// Returns the row id of the user or project that a row belongs to. It must not change while the
  /// row is stored. Null for a table without owners.
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

/// The same for a table whose rows belong to a user or project. The member `Owner` holds its row
/// id.
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
