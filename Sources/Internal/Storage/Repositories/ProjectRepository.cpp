#include "ProjectRepository.h"

#include <utility>

#include "JsonColumn.h"
#include "SQLiteContracts.h"

namespace pelorino {

/// Held as JSON text. What does not decode reads as the defaults.
template <>
struct SQLiteValueContertible<Config> {
  static std::optional<SQLiteValue> stored(const Config& field) {
    return encodeOrDefault(field, Config::defaulConfiguration());
  }
  static std::optional<Config> from(const Cursor& cursor, int at) {
    const auto text = cursor.text(at);
    auto stored = text ? pelorino::from<Config>(*text) : std::nullopt;
    return stored ? std::move(stored) : Config::defaulConfiguration();
  }
};

namespace {

using Entry = SQLiteContracts::ProjectEntry;

constexpr Column columns[] = {
    column<&Project::idKey>(Entry::id),
    column<&Project::applicationKey>(Entry::applicationKey),
    column<&Project::activeUserId>(Entry::activeUserId),
    column<&Project::trackingAvailable>(Entry::trackingAvailable),
    column<&Project::applicationBundle>(Entry::applicationBundle),
    column<&Project::applicationVersion>(Entry::applicationVersion),
    column<&Project::applicationBuildVersion>(Entry::applicationBuildVersion),
    column<&Project::configuration>(Entry::configuration),
    column<&Project::isReferralSent>(Entry::isReferralSent),
    column<&Project::savedTime>(Entry::savedTime),
    column<&Project::categoriesVersion>(Entry::categoriesVersion),
    column<&Project::isMigrated>(Entry::isMigrated),
};

constexpr TableDescription table = describeTable<Project>(Entry::tableName, columns);

}  // namespace

ProjectRepository::ProjectRepository(std::shared_ptr<DatabaseProtocol> with)
    : CachedRepository(table, std::move(with)) {}

}  // namespace pelorino
