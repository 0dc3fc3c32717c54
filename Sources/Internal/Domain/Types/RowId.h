#pragma once

#include <cstdint>

namespace pelorino {

/// The id of a row in its table. SQLite assigns it.
using RowId = std::int64_t;

/// The `idKey` of a model that is not stored.
inline constexpr RowId notStoredRowId = -1;

}  // namespace pelorino
