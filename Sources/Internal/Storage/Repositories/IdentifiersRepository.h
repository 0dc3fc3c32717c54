#pragma once

#include <span>

#include "CachedRepository.h"
#include "DeviceIdentifiers.h"
#include "SQLiteContracts.h"

namespace pelorino {

struct IdentifiersColumns {
  static constexpr auto tableName = SQLiteContracts::DeviceIdentifiersEntry::tableName;
  static constexpr auto owner = &DeviceIdentifiers::projectId;
  static std::span<const Column<DeviceIdentifiers>> columns();
};

extern template class CachedRepository<DeviceIdentifiers, IdentifiersColumns>;

/// The ids of the device, one row for each project.
class IdentifiersRepository final
    : public ProjectRowsRepository<DeviceIdentifiers, IdentifiersColumns> {
 public:
  using ProjectRowsRepository::ProjectRowsRepository;
};

}  // namespace pelorino
