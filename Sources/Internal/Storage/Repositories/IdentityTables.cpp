#include "JsonColumn.h"
#include "Repositories.h"

namespace pelorino {

/// Stored as JSON text. A text that cannot be decoded reads as the default configuration.
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

template <>
struct SQLiteValueContertible<PeopleProperties> {
  static std::optional<SQLiteValue> stored(const PeopleProperties& field) {
    return peopleJson(field);
  }
  static std::optional<PeopleProperties> from(const Cursor& cursor, int at) {
    const auto text = cursor.text(at);
    if (!text) return std::nullopt;
    return peopleProperties(*text);
  }
};

namespace {

constexpr Column projects[] = {
    column<&Project::applicationKey>("applicationKey", "TEXT NOT NULL UNIQUE"),
    column<&Project::activeUserId>("activeUserId", "INTEGER"),
    column<&Project::trackingAvailable>("trackingAvailable", "INTEGER"),
    column<&Project::applicationBundle>("applicationBundle", "TEXT"),
    column<&Project::applicationVersion>("applicationVersion", "TEXT"),
    column<&Project::applicationBuildVersion>("applicationBuildVersion", "TEXT"),
    column<&Project::configuration>("configuration", "TEXT DEFAULT '{}' NOT NULL"),
    column<&Project::isReferralSent>("isReferralSent", "INTEGER"),
    column<&Project::savedTime>("savedTime", "INTEGER"),
    column<&Project::categoriesVersion>("categoriesVersion", "INTEGER"),
    column<&Project::isMigrated>("isMigrated", "INTEGER DEFAULT 0 NOT NULL"),
};

constexpr Column users[] = {
    column<&User::projectId>(
        "projectId", "INTEGER NOT NULL CONSTRAINT users_projects_id_fk REFERENCES projects(id)"),
    column<&User::level>("level", "INTEGER DEFAULT 1 NOT NULL"),
    column<&User::sessionId>("sessionId", "INTEGER"),
    column<&User::userId>("userId", "TEXT"),
    column<&User::previousUserId>("previousUserId", "TEXT"),
    column<&User::lastForegroundTime>("lastForegroundTime", "INTEGER"),
    column<&User::lastBackgroundTime>("lastBackgroundTime", "INTEGER"),
    column<&User::isDefaultUser>("isDefaultUser", "INTEGER"),
    column<&User::isResourceAggregationEnable>("isResourceAggregationEnable", "INTEGER"),
};

constexpr Column deviceIdentifiers[] = {
    column<&DeviceIdentifiers::projectId>(
        "projectId",
        "INTEGER NOT NULL CONSTRAINT identifiers_projects_id_fk REFERENCES projects(id)"),
    column<&DeviceIdentifiers::deviceIdentifier>("deviceIdentifier", "TEXT"),
    column<&DeviceIdentifiers::previousDeviceIdentifier>("previousDeviceIdentifier", "TEXT"),
    column<&DeviceIdentifiers::pelorinoId>("pelorinoId", "INTEGER"),
    column<&DeviceIdentifiers::crossPlatformPelorinoId>("crossPlatformPelorinoId", "INTEGER"),
    column<&DeviceIdentifiers::uuid>("uuid", "TEXT"),
    column<&DeviceIdentifiers::pelorinoIdTimestamp>("pelorinoIdTimestamp", "INTEGER").addedBy(1),
};

constexpr Column sdkTools[] = {
    column<&SdkTools::properties>("metadata", "TEXT DEFAULT '[]'"),
};

}  // namespace

constinit const TableDescription ProjectEntry::table = describeTable<Project>("projects", projects);
constinit const TableDescription UserEntry::table =
    describeOwnedTable<&User::projectId>("users", users, "UNIQUE(projectId, userId)");
constinit const TableDescription DeviceIdentifiersEntry::table =
    describeOwnedTable<&DeviceIdentifiers::projectId>("deviceIdentifiers", deviceIdentifiers);
constinit const TableDescription SdkToolsEntry::table =
    describeTable<SdkTools>("sdkTools", sdkTools);

}  // namespace pelorino
