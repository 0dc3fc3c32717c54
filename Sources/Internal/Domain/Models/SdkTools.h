#pragma once

#include "PeopleValueType.h"
#include "RowId.h"

namespace pelorino {

/// What the library notes about itself, one row for the whole process. The key in use is
/// "sdkVersion".
class SdkTools final {
 public:
  RowId idKey = notStoredRowId;
  PeopleProperties properties;
};

}  // namespace pelorino
