#pragma once

#include <cstdint>

namespace pelorino {

/// Key of a stored model's row in its table, which SQLite gives.
using RowId = std::int64_t;

/// The `idKey` of a model that is in no table.
inline constexpr RowId notStoredRowId = -1;

}  // namespace pelorino
