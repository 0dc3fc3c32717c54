#include "IdentifiersRepository.h"

#include <utility>

#include "SQLiteContracts.h"

namespace pelorino {
namespace {

using Entry = SQLiteContracts::DeviceIdentifiersEntry;

constexpr Column columns[] = {
    column<&DeviceIdentifiers::idKey>(Entry::id),
    column<&DeviceIdentifiers::projectId>(Entry::projectId),
    column<&DeviceIdentifiers::deviceIdentifier>(Entry::deviceIdentifier),
    column<&DeviceIdentifiers::previousDeviceIdentifier>(Entry::previousDeviceIdentifier),
    column<&DeviceIdentifiers::pelorinoId>(Entry::pelorinoId),
    column<&DeviceIdentifiers::crossPlatformPelorinoId>(Entry::crossPlatformPelorinoId),
    column<&DeviceIdentifiers::uuid>(Entry::uuid),
    column<&DeviceIdentifiers::pelorinoIdTimestamp>(Entry::pelorinoIdTimestamp),
};

constexpr TableDescription table =
    describeOwnedTable<&DeviceIdentifiers::projectId>(Entry::tableName, columns);

}  // namespace

IdentifiersRepository::IdentifiersRepository(std::shared_ptr<DatabaseProtocol> with)
    : ProjectRowsRepository(table, std::move(with)) {}

}  // namespace pelorino
