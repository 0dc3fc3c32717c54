#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "DatabaseFile.h"
#include "LogCapture.h"
#include "SQLiteError.h"
#include "SQLiteProvider.h"

namespace pelorino {
namespace {

/// What creation throws, as it is printed; empty when it throws nothing.
std::string failureToOpen(const std::optional<std::string>& support) {
  try {
    SQLiteProvider provider("key", support);
  } catch (const std::exception& error) {
    return error.what();
  }
  return {};
}

std::string bytesOf(const std::string& path) {
  std::ostringstream bytes;
  bytes << std::ifstream(path, std::ios::binary).rdbuf();
  return bytes.str();
}

constexpr const char* describeTables =
    "SELECT m.name || ': ' || group_concat(p.name || ' ' || p.type || iif(p.\"notnull\", '!', '') "
    "|| coalesce('=' || p.dflt_value, '') || iif(p.pk, ' key', '') || coalesce("
    "(SELECT '->' || f.\"table\" || '.' || f.\"to\" FROM pragma_foreign_key_list(m.name) f "
    "WHERE f.\"from\" = p.name), ''), ', ') "
    "FROM sqlite_master m, pragma_table_info(m.name) p "
    "WHERE m.type = 'table' AND m.name NOT LIKE 'sqlite%' GROUP BY m.name ORDER BY m.name";

constexpr const char* allTables =
    R"(currencyAccrualResources: id INTEGER! key, userId INTEGER->users.id, type INTEGER!, name TEXT, amount INTEGER!, source TEXT, timestamp INTEGER!
deviceIdentifiers: id INTEGER! key, projectId INTEGER!->projects.id, deviceIdentifier TEXT, previousDeviceIdentifier TEXT, pelorinoId INTEGER, crossPlatformPelorinoId INTEGER, uuid TEXT, pelorinoIdTimestamp INTEGER
events: id INTEGER! key, code TEXT, userId INTEGER->users.id, eventJson TEXT
levelResource: id INTEGER! key, userId INTEGER->users.id, type INTEGER!, name TEXT, amount INTEGER!
messagingCategory: id INTEGER! key, identifier TEXT, buttons TEXT
peopleCards: id INTEGER! key, userId INTEGER->users.id, json TEXT, updated INTEGER!=0, cleared INTEGER!=0, changedKeys TEXT
projects: id INTEGER! key, applicationKey TEXT!, activeUserId INTEGER, trackingAvailable INTEGER, applicationBundle TEXT, applicationVersion TEXT, applicationBuildVersion TEXT, configuration TEXT!='{}', isReferralSent INTEGER, savedTime INTEGER, categoriesVersion INTEGER, isMigrated INTEGER!=0
realPaymentMarks: id INTEGER! key, projectId INTEGER->projects.id, orderId TEXT
reports: id INTEGER! key, userId INTEGER->users.id, packagesJson TEXT, uuid TEXT!='{}'
sdkTools: id INTEGER! key, metadata TEXT='[]'
subscriptions: id INTEGER! key, projectId INTEGER!->projects.id, products TEXT='[]', restoredTransaction TEXT='[]', alreadyRestored INTEGER!=0, productIsChanged INTEGER!=0, alreadySendRestoreEvent INTEGER!=0
tutorialMarkEntry: id INTEGER! key, userId INTEGER->users.id, step INTEGER
users: id INTEGER! key, projectId INTEGER!->projects.id, level INTEGER!=1, sessionId INTEGER, userId TEXT, previousUserId TEXT, lastForegroundTime INTEGER, lastBackgroundTime INTEGER, isDefaultUser INTEGER, isResourceAggregationEnable INTEGER)";

TEST(SQLiteProvider, AFirstStartMakesFolderFileAndSchema) {
  const DatabaseFile file("Mes donn\u00e9es \U0001F3AE");
  LogCapture log;
  EXPECT_EQ(failureToOpen(file.support()), "");
  EXPECT_EQ(failureToOpen(file.support()), "");
  const std::string opened =
      "DEBUG [Database Module] Successfully opened connection to database at " + file.path();
  EXPECT_EQ(log.lines(), (std::vector<std::string>{
                             "DEBUG [Database Module] It's a clean launch of the SDK", opened,
                             "DEBUG [Database Module] Trying to load database", opened}));
  EXPECT_EQ(file.run("PRAGMA user_version"), "1");
  EXPECT_EQ(file.run(describeTables), allTables);
  using std::filesystem::perms;
  EXPECT_EQ(std::filesystem::status(file.folder()).permissions(), perms(0700));
  EXPECT_EQ(std::filesystem::status(file.path()).permissions(), perms(0600));
}

TEST(SQLiteProvider, AnOlderFileGainsWhatIsNewAndLosesNothing) {
  for (const char* difference :
       {"ALTER TABLE deviceIdentifiers DROP COLUMN pelorinoIdTimestamp; DROP TABLE subscriptions",
        "DROP TABLE subscriptions", "DROP TABLE sdkTools", "SELECT 'an upgrade cut short'"}) {
    SCOPED_TRACE(difference);
    const DatabaseFile file;
    SQLiteProvider("key", file.support());
    file.run(
        "INSERT INTO deviceIdentifiers (projectId, deviceIdentifier, uuid) VALUES (1, 'd', 'u');"
        "INSERT INTO events (code, userId, eventJson) VALUES ('ce', 1, '{}'), ('lu', 1, '{}');"
        "PRAGMA user_version = 0;" +
        std::string(difference));
    EXPECT_EQ(failureToOpen(file.support()), "");
    EXPECT_EQ(file.run("PRAGMA user_version"), "1");
    EXPECT_EQ(file.run(describeTables), allTables);
    EXPECT_EQ(file.run("SELECT * FROM deviceIdentifiers"), "1|1|d||||u|");
    EXPECT_EQ(file.run("SELECT id, code FROM events"), "1|ce\n2|lu");
  }
}

TEST(SQLiteProvider, OnlyVersion0RunsStatements) {
  const auto expectVersion = [](const std::string& version, const std::string& failure,
                                const std::string& after) {
    SCOPED_TRACE(version);
    const DatabaseFile file;
    file.run("CREATE TABLE other (x); PRAGMA user_version = " + version);
    const std::string before = bytesOf(file.path());
    EXPECT_EQ(failureToOpen(file.support()), failure);
    EXPECT_EQ(file.run("SELECT user_version, name FROM pragma_user_version, sqlite_master"),
              after + "|other");
    EXPECT_EQ(bytesOf(file.path()) == before, version == after);
  };
  expectVersion("1", "", "1");
  expectVersion("2", "", "1");
  expectVersion("-1", "The database has the unknown version -1 (code: 1)", "-1");
}

TEST(SQLiteProvider, RefusesWhatItCannotOpen) {
  EXPECT_EQ(failureToOpen(std::nullopt), "SQLite error (code: 1)");
  const DatabaseFile folderForFile;
  std::filesystem::create_directories(folderForFile.path());
  EXPECT_EQ(failureToOpen(folderForFile.support()), "SQLite error (code: 14)");
}

class SQLiteProviderOperations : public ::testing::Test {
 protected:
  std::optional<RowId> insertProject(const char* key) {
    const ColumnValue content[] = {{"applicationKey", std::string(key)}, {"isMigrated", true}};
    return provider_.insert("projects", content);
  }

  DatabaseFile file_;
  SQLiteProvider provider_{"key", file_.support()};
  LogCapture log_{PLRLogLevel::error};
};

TEST_F(SQLiteProviderOperations, WriteReadAndDeleteRows) {
  for (const char* key : {"a", "b", "c"}) EXPECT_TRUE(insertProject(key));
  const std::optional<SQLiteValue> b = std::string("b");
  const ColumnValue time[] = {{"savedTime", std::int64_t{5}}, {"isMigrated", false}};
  EXPECT_EQ(provider_.update("projects", time, "applicationKey=?", {&b, 1}), 1);

  std::string rows;
  EXPECT_TRUE(provider_.query(
      {.tableName = "projects p",
       .projection = {"p.applicationKey", "p.savedTime"},
       .join = "projects q ON q.id = p.id",
       .selection = "p.id > ?",
       .selectionArgs = {std::int64_t{1}},
       .groupBy = "p.id",
       .sortOrder = "p.id DESC",
       .limit = 2},
      [&](const Cursor& row) { rows += *row.text(0) + (row.integer(1) ? "5 " : " "); }));
  EXPECT_EQ(rows, "c b5 ");

  EXPECT_EQ(provider_.deleteRows("projects", "applicationKey=?", {&b, 1}), 1);
  EXPECT_EQ(provider_.deleteRows("projects", "applicationKey=?", {&b, 1}), 0);
  EXPECT_EQ(file_.run("SELECT applicationKey, isMigrated FROM projects"), "a|1\nc|1");
  provider_.clear("projects");
  EXPECT_EQ(file_.run("SELECT * FROM projects"), "");
}

TEST_F(SQLiteProviderOperations, FailuresAreLoggedAndShowAsEmptyResults) {
  EXPECT_TRUE(insertProject("a"));
  EXPECT_EQ(insertProject("a"), std::nullopt);
  const ColumnValue wrong[] = {{"noColumn", std::int64_t{5}}};
  EXPECT_EQ(provider_.update("projects", wrong, "id=1", {}), std::nullopt);
  EXPECT_EQ(provider_.deleteRows("projects", "id=", {}), 0);
  provider_.clear("noTable");
  EXPECT_FALSE(provider_.query({.tableName = "noTable"}, [](const Cursor&) {}));
  EXPECT_FALSE(provider_.query({.tableName = "projects"}, [](const Cursor& row) {
    throw SQLiteError::error("row", static_cast<int>(row.integer(0).value()));
  }));
  EXPECT_EQ(log_.lines(),
            (std::vector<std::string>{
                "ERROR [Database Module] Error in inserting: UNIQUE constraint failed: "
                "projects.applicationKey (code: 19)",
                "ERROR [Database Module] Error in inserting: SQLite error (code: 1)",
                "ERROR [Database Module] Error in delete: SQLite error (code: 1)",
                "ERROR [Database Module] Error in delete: SQLite error (code: 1)",
                "ERROR [Database Module] Error in query: SQLite error (code: 1)",
                "ERROR [Database Module] Error in query: row (code: 1)"}));
}

}  // namespace
}  // namespace pelorino
