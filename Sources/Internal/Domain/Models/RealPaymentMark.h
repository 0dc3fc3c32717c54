#pragma once

#include <string>

#include "RowId.h"

namespace pelorino {

/// An order of a project that has been reported, so that it is not reported again.
struct RealPaymentMark {
  RowId idKey = notStoredRowId;
  RowId projectId = notStoredRowId;
  std::string orderId;
};

}  // namespace pelorino
