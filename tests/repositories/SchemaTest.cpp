#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "DatabaseFile.h"
#include "SQLiteContracts.h"

namespace pelorino {
namespace {

struct MasterRow {
  const char* type;
  const char* name;
  const char* table;
  std::string sql = {};
};

/// What a store of the current version holds in sqlite_master, to the letter. It is on the disks of
/// players: a change here is a change of the schema, and needs a version of its own.
const MasterRow master[] = {
    {"table", "projects", "projects",
     R"(CREATE TABLE projects (
    id INTEGER NOT NULL PRIMARY KEY AUTOINCREMENT,
    applicationKey TEXT NOT NULL UNIQUE,
    activeUserId INTEGER,
    trackingAvailable INTEGER,
    applicationBundle TEXT,
    applicationVersion TEXT,
    applicationBuildVersion TEXT,
    configuration TEXT DEFAULT '{}' NOT NULL,
    isReferralSent INTEGER,
    savedTime INTEGER,
    categoriesVersion INTEGER,
    isMigrated INTEGER DEFAULT 0 NOT NULL
))"},
    {"index", "sqlite_autoindex_projects_1", "projects"},
    {"table", "sqlite_sequence", "sqlite_sequence", "CREATE TABLE sqlite_sequence(name,seq)"},
    {"table", "users", "users",
     R"(CREATE TABLE users (
    id INTEGER NOT NULL PRIMARY KEY AUTOINCREMENT,
    projectId INTEGER NOT NULL CONSTRAINT users_projects_id_fk REFERENCES projects(id),
    level INTEGER DEFAULT 1 NOT NULL,
    sessionId INTEGER,
    userId TEXT,
    previousUserId TEXT,
    lastForegroundTime INTEGER,
    lastBackgroundTime INTEGER,
    isDefaultUser INTEGER,
    isResourceAggregationEnable INTEGER,
    UNIQUE(projectId, userId)
))"},
    {"index", "sqlite_autoindex_users_1", "users"},
    {"table", "events", "events",
     R"(CREATE TABLE events (
    id INTEGER NOT NULL PRIMARY KEY AUTOINCREMENT,
    code TEXT,
    userId INTEGER CONSTRAINT events_users_id_fk REFERENCES users(id),
    eventJson TEXT
))"},
    {"table", "reports", "reports",
     R"(CREATE TABLE reports (
    id INTEGER NOT NULL PRIMARY KEY AUTOINCREMENT,
    userId INTEGER CONSTRAINT reports_users_id_fk REFERENCES users(id),
    packagesJson TEXT,
    uuid TEXT DEFAULT '{}' NOT NULL
))"},
    {"table", "levelResource", "levelResource",
     R"(CREATE TABLE levelResource (
    id INTEGER NOT NULL PRIMARY KEY AUTOINCREMENT,
    userId INTEGER CONSTRAINT levelResource_users_id_fk REFERENCES users(id),
    type INTEGER NOT NULL,
    name TEXT,
    amount INTEGER NOT NULL
))"},
    {"table", "currencyAccrualResources", "currencyAccrualResources",
     R"(CREATE TABLE currencyAccrualResources (
    id INTEGER NOT NULL PRIMARY KEY AUTOINCREMENT,
    userId INTEGER CONSTRAINT currencyAccrualResources_users_id_fk REFERENCES users(id),
    type INTEGER NOT NULL,
    name TEXT,
    amount INTEGER NOT NULL,
    source TEXT,
    timestamp INTEGER NOT NULL
))"},
    {"table", "deviceIdentifiers", "deviceIdentifiers",
     R"(CREATE TABLE deviceIdentifiers (
    id INTEGER NOT NULL PRIMARY KEY AUTOINCREMENT,
    projectId INTEGER NOT NULL CONSTRAINT identifiers_projects_id_fk REFERENCES projects(id),
    deviceIdentifier TEXT,
    previousDeviceIdentifier TEXT,
    pelorinoId INTEGER,
    crossPlatformPelorinoId INTEGER,
    uuid TEXT
, pelorinoIdTimestamp INTEGER))"},
    {"table", "realPaymentMarks", "realPaymentMarks",
     R"(CREATE TABLE realPaymentMarks (
    id INTEGER NOT NULL PRIMARY KEY AUTOINCREMENT,
    projectId INTEGER CONSTRAINT realPaymentMarks_projects_id_fk REFERENCES projects(id),
    orderId TEXT
))"},
    {"table", "tutorialMarkEntry", "tutorialMarkEntry",
     R"(CREATE TABLE tutorialMarkEntry (
    id INTEGER NOT NULL PRIMARY KEY AUTOINCREMENT,
    userId INTEGER CONSTRAINT tutorialMarkEntry_users_id_fk REFERENCES users(id),
    step INTEGER
))"},
    {"table", "peopleCards", "peopleCards",
     R"(CREATE TABLE peopleCards (
    id INTEGER NOT NULL PRIMARY KEY AUTOINCREMENT,
    userId INTEGER CONSTRAINT peopleCardEntry_users_id_fk REFERENCES users(id),
    json TEXT,
    updated INTEGER DEFAULT 0 NOT NULL,
    cleared INTEGER DEFAULT 0 NOT NULL,
    changedKeys TEXT
))"},
    {"table", "messagingCategory", "messagingCategory",
     R"(CREATE TABLE messagingCategory (
    id INTEGER NOT NULL PRIMARY KEY AUTOINCREMENT,
    identifier TEXT,
    buttons TEXT
))"},
    {"table", "sdkTools", "sdkTools",
     R"(CREATE TABLE sdkTools (
    id INTEGER NOT NULL PRIMARY KEY AUTOINCREMENT,
    metadata TEXT DEFAULT '[]'
))"},
    {"table", "subscriptions", "subscriptions",
     R"(CREATE TABLE subscriptions (
    id INTEGER NOT NULL PRIMARY KEY AUTOINCREMENT,
    projectId INTEGER NOT NULL CONSTRAINT subscriptions_projects_id_fk REFERENCES projects(id),
    products TEXT DEFAULT '[]',
    restoredTransaction TEXT DEFAULT '[]',
    alreadyRestored INTEGER DEFAULT 0 NOT NULL,
    productIsChanged INTEGER DEFAULT 0 NOT NULL,
    alreadySendRestoreEvent INTEGER DEFAULT 0 NOT NULL
))"},
};

constexpr std::string_view addedColumn = ", pelorinoIdTimestamp INTEGER";

std::string storeMaster(const DatabaseFile& file) {
  SQLiteProvider("key", file.support(), SQLiteContracts::schema());
  return file.run("SELECT type, name, tbl_name, sql FROM sqlite_master");
}

std::string currentMaster() {
  std::string text;
  for (const MasterRow& row : master) {
    if (!text.empty()) text += '\n';
    text += std::string(row.type) + '|' + row.name + '|' + row.table + '|' + row.sql;
  }
  return text;
}

TEST(Schema, OfAFreshStoreIsToTheLetter) {
  const DatabaseFile file;
  EXPECT_EQ(storeMaster(file), currentMaster());
  EXPECT_EQ(storeMaster(file), currentMaster());
}

TEST(Schema, OfAFileOfVersion0BecomesTheSame) {
  const DatabaseFile file;
  for (const MasterRow& row : master) {
    const std::string_view name = row.name;
    if (row.sql.empty() || name == "sqlite_sequence" || name == "subscriptions") continue;
    std::string sql = row.sql;
    const std::size_t added = sql.find(addedColumn);
    if (added != std::string::npos) sql.erase(added, addedColumn.size());
    file.run(sql);
  }
  EXPECT_EQ(storeMaster(file), currentMaster());
}

TEST(Schema, StandsARepetitionOfAllSteps) {
  const DatabaseFile file;
  storeMaster(file);
  file.run("PRAGMA user_version = 0");
  EXPECT_EQ(storeMaster(file), currentMaster());
}

}  // namespace
}  // namespace pelorino
