#pragma once

#include <cstdint>
#include <string>

#include "RowId.h"

// Marks of what has been reported, so that it is not reported again. incomeQueue only.

namespace pelorino {

/// An order of a project.
struct RealPaymentMark {
  RowId idKey = notStoredRowId;
  RowId projectId = notStoredRowId;
  std::string orderId;
};

/// A tutorial step of a user.
struct TutorialMark {
  RowId idKey = notStoredRowId;
  RowId userId = notStoredRowId;
  std::int64_t step = 0;
};

}  // namespace pelorino
