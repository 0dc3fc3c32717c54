#pragma once

#include <memory>

#include "CachedRepository.h"
#include "PeopleCard.h"

namespace pelorino {

/// The cards of all users.
class PeopleRepository final : public UserRowsRepository<PeopleCard> {
 public:
  explicit PeopleRepository(std::shared_ptr<DatabaseProtocol> with);
};

}  // namespace pelorino
