#pragma once

#include "Encodable.h"
#include "Identifiers.h"

namespace pelorino {

/// A request object with the ids that travel beside it.
struct BackendMessage {
  Encodable data;
  Identifiers identifiers;
};

}  // namespace pelorino
