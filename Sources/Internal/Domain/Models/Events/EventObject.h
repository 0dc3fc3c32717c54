#pragma once

#include <string>

#include "RowId.h"

namespace pelorino {

/// One event that waits to be packed.
class EventObject final {
 public:
  std::string code;
  RowId idKey = notStoredRowId;
  RowId userId = notStoredRowId;  ///< `idKey` of the owning user; -1 for an event without a row.
  std::string json;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("code", self.code);
    visit("idKey", self.idKey);
    visit("userId", self.userId);
    visit("json", self.json);
  }
};

}  // namespace pelorino
