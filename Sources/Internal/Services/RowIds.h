#pragma once

#include <memory>
#include <vector>

#include "RowId.h"
#include "User.h"

namespace pelorino {

/// The row ids of users, in their order.
[[nodiscard]] inline std::vector<RowId> rowIds(const std::vector<std::shared_ptr<User>>& users) {
  std::vector<RowId> ids;
  ids.reserve(users.size());
  for (const auto& user : users) ids.push_back(user->idKey);
  return ids;
}

}  // namespace pelorino
