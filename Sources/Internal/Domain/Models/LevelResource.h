#pragma once

#include <cstdint>
#include <string>

#include "LevelResourceType.h"
#include "RowId.h"

namespace pelorino {

/// Sum of one resource that a user earned, bought or spent within the current level.
struct LevelResource {
  RowId idKey = notStoredRowId;
  RowId userId = notStoredRowId;
  LevelResourceType type = LevelResourceType::earned;
  std::string name;
  std::int64_t amount = 0;
};

}  // namespace pelorino
