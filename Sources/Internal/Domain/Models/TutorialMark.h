#pragma once

#include <cstdint>

#include "RowId.h"

namespace pelorino {

/// A tutorial step of a user that has been reported, so that it is not reported again.
struct TutorialMark {
  RowId idKey = notStoredRowId;
  RowId userId = notStoredRowId;
  std::int64_t step = 0;
};

}  // namespace pelorino
