#include "IdentifiersRepository.h"

namespace pelorino {
namespace {

using Entry = SQLiteContracts::DeviceIdentifiersEntry;

constexpr Column<DeviceIdentifiers> table[] = {
    column<&DeviceIdentifiers::idKey>(Entry::id),
    column<&DeviceIdentifiers::projectId>(Entry::projectId),
    column<&DeviceIdentifiers::deviceIdentifier>(Entry::deviceIdentifier),
    column<&DeviceIdentifiers::previousDeviceIdentifier>(Entry::previousDeviceIdentifier),
    column<&DeviceIdentifiers::pelorinoId>(Entry::pelorinoId),
    column<&DeviceIdentifiers::crossPlatformPelorinoId>(Entry::crossPlatformPelorinoId),
    column<&DeviceIdentifiers::uuid>(Entry::uuid),
    column<&DeviceIdentifiers::pelorinoIdTimestamp>(Entry::pelorinoIdTimestamp),
};

}  // namespace

std::span<const Column<DeviceIdentifiers>> IdentifiersColumns::columns() {
  return table;
}

template class CachedRepository<DeviceIdentifiers, IdentifiersColumns>;

}  // namespace pelorino
