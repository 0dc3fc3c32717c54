#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace pelorino {

/// The kinds of value that may be bound to a statement. NULL is the absent std::optional. A `bool`
/// is stored as the integer 0 or 1, a text as its UTF-8 bytes up to the first NUL.
using SQLiteValue = std::variant<double, std::int64_t, std::string, bool>;

/// Primary key of a row.
using RowId = std::int64_t;

/// The `idKey` of a model that is in no table.
inline constexpr RowId notStoredRowId = -1;

/// One column of a row that is to be written.
struct ColumnValue {
  std::string_view column;
  std::optional<SQLiteValue> value;
};

}  // namespace pelorino
