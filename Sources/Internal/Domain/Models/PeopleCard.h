#pragma once

#include <string>
#include <vector>

#include "PeopleValueType.h"
#include "RowId.h"

namespace pelorino {

/// The card of one user: named values, and what has changed since they were last transmitted.
/// Shared by reference.
class PeopleCard final {
 public:
  RowId idKey = notStoredRowId;
  RowId userId = notStoredRowId;  ///< `idKey` of the owner.
  std::string json;               ///< `properties`, rewritten after every change.
  PeopleProperties properties;
  std::vector<std::string> changedKeys;  ///< In order of first change, without duplicates.
  bool updated = false;
  bool cleared = false;
};

/// What the library notes about itself, one row for the whole process. The key in use is
/// "sdkVersion".
class SdkTools final {
 public:
  RowId idKey = notStoredRowId;
  PeopleProperties properties;
};

}  // namespace pelorino
