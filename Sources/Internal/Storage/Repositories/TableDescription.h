#pragma once

#include <memory>
#include <span>
#include <string_view>

#include "Column.h"
#include "SQLiteValue.h"

namespace pelorino {

/// What tells one table from another: its name, its columns, and how to get at a row's model, whose
/// type nobody else needs.
struct TableDescription {
  std::string_view name;
  std::span<const Column> columns;
  std::shared_ptr<void> (*make)();  ///< A model that is to be filled from a row.
  RowId& (*idKey)(void* model);
  /// The row id of the user or project that the row belongs to, which does not change while the row
  /// is stored; null for a table whose rows belong to nobody.
  RowId (*owner)(const void* model) = nullptr;
};

template <class Model>
constexpr TableDescription describeTable(std::string_view name, std::span<const Column> columns) {
  return {.name = name,
          .columns = columns,
          .make = []() -> std::shared_ptr<void> { return std::make_shared<Model>(); },
          .idKey = [](void* model) -> RowId& { return static_cast<Model*>(model)->idKey; }};
}

/// The same for a table whose rows belong to the user or project that the member `Owner` names.
template <auto Owner>
constexpr TableDescription describeOwnedTable(std::string_view name,
                                              std::span<const Column> columns) {
  using Model = typename MemberOf<Owner>::ModelType;
  TableDescription table = describeTable<Model>(name, columns);
  table.owner = [](const void* model) -> RowId { return static_cast<const Model*>(model)->*Owner; };
  return table;
}

}  // namespace pelorino
