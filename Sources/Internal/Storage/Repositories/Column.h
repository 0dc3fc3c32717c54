#pragma once

#include <optional>
#include <string_view>
#include <type_traits>
#include <utility>

#include "SQLiteConvertible.h"

namespace pelorino {

/// One column of a table and the field of the model that it holds. A table lists its columns in
/// their order on disk, `id` first; rows are read by that order and written by name. The model's
/// type is known to the functions alone.
struct Column {
  std::string_view name;
  /// False when the column does not hold what the model must have.
  bool (*read)(void* model, const Cursor& cursor, int at);
  std::optional<SQLiteValue> (*write)(const void* model);
};

template <auto Member>
struct MemberOf;

template <class Model, class Field, Field Model::*Member>
struct MemberOf<Member> {
  using ModelType = Model;

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
constexpr Column column(std::string_view name) {
  return {name, MemberOf<Member>::read, MemberOf<Member>::write};
}

template <class Model>
using ReadColumn = bool (*)(Model& model, const Cursor& cursor, int at);
template <class Model>
using WriteColumn = std::optional<SQLiteValue> (*)(const Model& model);

/// A column that is read and written by functions of its own.
template <class Model, ReadColumn<Model> Read, WriteColumn<Model> Write>
constexpr Column column(std::string_view name) {
  return {name,
          [](void* model, const Cursor& cursor, int at) {
            return Read(*static_cast<Model*>(model), cursor, at);
          },
          [](const void* model) { return Write(*static_cast<const Model*>(model)); }};
}

}  // namespace pelorino
