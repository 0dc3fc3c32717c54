#pragma once

#include <optional>
#include <string_view>
#include <utility>

#include "SQLiteConvertible.h"

namespace pelorino {

/// One column of a table and the field of the model that it holds. A table lists its columns in
/// their order on disk, `id` first; rows are read by that order and written by name.
template <class Model>
struct Column {
  std::string_view name;
  /// False when the column does not hold what the model must have.
  bool (*read)(Model& model, const Cursor& cursor, int at);
  std::optional<SQLiteValue> (*write)(const Model& model);
};

template <auto Member>
struct MemberOf;

template <class Model, class Field, Field Model::*Member>
struct MemberOf<Member> {
  static constexpr Column<Model> column(std::string_view name) {
    return {
        name,
        [](Model& model, const Cursor& cursor, int at) {
          auto field = SQLiteValueContertible<Field>::from(cursor, at);
          if (field) model.*Member = std::move(*field);
          return field.has_value();
        },
        [](const Model& model) { return SQLiteValueContertible<Field>::stored(model.*Member); }};
  }
};

/// A column that holds a field as the field's type says.
template <auto Member>
constexpr auto column(std::string_view name) {
  return MemberOf<Member>::column(name);
}

}  // namespace pelorino
