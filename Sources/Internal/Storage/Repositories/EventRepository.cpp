#include "EventRepository.h"

namespace pelorino {
namespace {

using Entry = SQLiteContracts::EventEntry;

constexpr Column<EventObject> table[] = {
    column<&EventObject::idKey>(Entry::id),
    column<&EventObject::code>(Entry::code),
    column<&EventObject::userId>(Entry::userId),
    column<&EventObject::json>(Entry::eventJson),
};

}  // namespace

std::span<const Column<EventObject>> EventColumns::columns() {
  return table;
}

template class CachedRepository<EventObject, EventColumns>;

}  // namespace pelorino
