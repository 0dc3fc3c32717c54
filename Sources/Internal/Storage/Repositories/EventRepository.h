#pragma once

#include <memory>

#include "CachedRepository.h"
#include "Event.h"

namespace pelorino {

/// Events that wait to be packed.
class EventRepository final : public UserRowsRepository<EventObject> {
 public:
  explicit EventRepository(std::shared_ptr<DatabaseProtocol> with);
};

}  // namespace pelorino
