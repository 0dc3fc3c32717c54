#pragma once

#include <memory>

#include "CachedRepository.h"
#include "Identifiers.h"

namespace pelorino {

/// The ids of the device, one row for each project.
class IdentifiersRepository final : public ProjectRowsRepository<DeviceIdentifiers> {
 public:
  explicit IdentifiersRepository(std::shared_ptr<DatabaseProtocol> with);
};

}  // namespace pelorino
