#pragma once

#include <pelorino/PLRAccrualType.h>

#include <cstdint>
#include <string>

#include "RowId.h"

namespace pelorino {

/// Sum of one currency that a user got from one source, until it is reported.
struct CurrencyAccrualResource {
  RowId idKey = notStoredRowId;
  RowId userId = notStoredRowId;
  PLRAccrualType type = PLRAccrualType::earned;
  std::string name;
  std::int64_t amount = 0;
  std::string source;
  std::int64_t timestamp = 0;  ///< Milliseconds since 1970.
};

}  // namespace pelorino
