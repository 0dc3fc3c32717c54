#pragma once

#include "SQLiteProvider.h"

namespace pelorino {

/// The versions of the database's schema and the steps between them. Each table defines its own
/// name and columns (Repositories.h). Released tables may only get new columns at the end, by a
/// step of a new version.
struct SQLiteContracts final {
  static constexpr std::int64_t schemeVersion = 1;

  /// A new file has version 0 and runs all steps.
  [[nodiscard]] static Schema schema();
};

}  // namespace pelorino
