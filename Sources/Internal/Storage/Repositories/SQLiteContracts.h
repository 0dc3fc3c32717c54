#pragma once

#include "SQLiteProvider.h"

namespace pelorino {

/// The versions of the store's schema and the steps between them. The names and columns of the
/// tables are told with each table (Repositories.h); a table of an earlier version may only gain
/// columns at its end, by a step of a new version.
struct SQLiteContracts final {
  static constexpr std::int64_t schemeVersion = 1;

  /// A file of version 0, as a new one is, runs both parts of the map.
  [[nodiscard]] static Schema schema();
};

}  // namespace pelorino
