#pragma once

#include <span>

#include "CachedRepository.h"
#include "EventObject.h"
#include "SQLiteContracts.h"

namespace pelorino {

struct EventColumns {
  static constexpr auto tableName = SQLiteContracts::EventEntry::tableName;
  static constexpr auto owner = &EventObject::userId;
  static std::span<const Column<EventObject>> columns();
};

extern template class CachedRepository<EventObject, EventColumns>;

/// Events that wait to be packed.
class EventRepository final : public UserRowsRepository<EventObject, EventColumns> {
 public:
  using UserRowsRepository::UserRowsRepository;
};

}  // namespace pelorino
