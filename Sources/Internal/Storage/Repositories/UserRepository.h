#pragma once

#include <memory>

#include "CachedRepository.h"
#include "User.h"

namespace pelorino {

/// The users of all projects.
class UserRepository final : public ProjectRowsRepository<User> {
 public:
  explicit UserRepository(std::shared_ptr<DatabaseProtocol> with);
};

}  // namespace pelorino
