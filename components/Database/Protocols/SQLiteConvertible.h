#pragma once

#include <concepts>
#include <cstdint>
#include <optional>
#include <string>

#include "Cursor.h"

namespace pelorino {

/// A model that can be read from a row: it is constructed empty, then the row's id and the columns
/// fill its fields.
template <class Model>
concept SQLiteConvertible = std::default_initializable<Model> && requires(Model& model) {
  { model.idKey } -> std::same_as<std::int64_t&>;
};

/// How a field is stored in one column: `stored` returns the value to bind, `from` reads it back,
/// or returns nothing if the column's value does not fit. Specialize it for a further type.
template <class Field>
struct SQLiteValueContertible;

template <>
struct SQLiteValueContertible<std::int64_t> {
  static std::optional<SQLiteValue> stored(std::int64_t field) { return field; }
  static std::optional<std::int64_t> from(const Cursor& cursor, int at) {
    return cursor.integer(at);
  }
};

template <>
struct SQLiteValueContertible<std::string> {
  static std::optional<SQLiteValue> stored(const std::string& field) { return field; }
  static std::optional<std::string> from(const Cursor& cursor, int at) { return cursor.text(at); }
};

/// Any column can be read as a boolean: true is an integer above 0.
template <>
struct SQLiteValueContertible<bool> {
  static std::optional<SQLiteValue> stored(bool field) { return field; }
  static std::optional<bool> from(const Cursor& cursor, int at) {
    return cursor.integer(at).value_or(0) > 0;
  }
};

/// An optional field can be read from any column: it is absent where the column holds another type.
template <class Field>
struct SQLiteValueContertible<std::optional<Field>> {
  static std::optional<SQLiteValue> stored(const std::optional<Field>& field) {
    return field ? SQLiteValueContertible<Field>::stored(*field) : std::nullopt;
  }
  static std::optional<std::optional<Field>> from(const Cursor& cursor, int at) {
    return std::make_optional(SQLiteValueContertible<Field>::from(cursor, at));
  }
};

}  // namespace pelorino
