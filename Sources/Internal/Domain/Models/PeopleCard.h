#pragma once

#include <string>
#include <vector>

#include "PeopleValueType.h"
#include "RowId.h"

namespace pelorino {

/// The card of one user: named values, and which of them have changed since the card was last sent.
///
/// Threads: the incomeQueue only. Shared: store a change through the repository.
class PeopleCard final {
 public:
  RowId idKey = notStoredRowId;
  RowId userId = notStoredRowId;  ///< `idKey` of the owner.
  std::string json;               ///< The text of `properties`; kept equal to them.
  PeopleProperties properties;
  std::vector<std::string> changedKeys;  ///< In order of first change, without duplicates.
  bool updated = false;                  ///< Written since it was last sent.
  bool cleared = false;                  ///< Cleared since it was last sent.
};

/// Notes of the library about itself, one row for the whole database. Only the key "sdkVersion" is
/// used. incomeQueue only.
class SdkTools final {
 public:
  RowId idKey = notStoredRowId;
  PeopleProperties properties;
};

}  // namespace pelorino
