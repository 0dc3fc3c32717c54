#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
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

int rightsOf(const std::string& path) {
  return static_cast<int>(std::filesystem::status(path).permissions());
}

constexpr const char* describeTables =
    "SELECT m.name || ': ' || group_concat(p.name || ' ' || p.type || iif(p.\"notnull\", '!', '') "
    "|| coalesce('=' || p.dflt_value, '') || iif(p.pk, ' key', '') || coalesce("
    "(SELECT '->' || f.\"table\" || '.' || f.\"to\" FROM pragma_foreign_key_list(m.name) f "
    "WHERE f.\"from\" = p.name), ''), ', ') "
    "FROM sqlite_master m, pragma_table_info(m.name) p "
    "WHERE m.type = 'table' AND m.name NOT LIKE 'sqlite%' GROUP BY m.name ORDER BY m.rootpage";

constexpr const char* allTables =
    R"(projects: id INTEGER! key, applicationKey TEXT!, activeUserId INTEGER, trackingAvailable INTEGER, applicationBundle TEXT, applicationVersion TEXT, applicationBuildVersion TEXT, configuration TEXT!='{}', isReferralSent INTEGER, savedTime INTEGER, categoriesVersion INTEGER, isMigrated INTEGER!=0
users: id INTEGER! key, projectId INTEGER!->projects.id, level INTEGER!=1, sessionId INTEGER, userId TEXT, previousUserId TEXT, lastForegroundTime INTEGER, lastBackgroundTime INTEGER, isDefaultUser INTEGER, isResourceAggregationEnable INTEGER
events: id INTEGER! key, code TEXT, userId INTEGER->users.id, eventJson TEXT
reports: id INTEGER! key, userId INTEGER->users.id, packagesJson TEXT, uuid TEXT!='{}'
levelResource: id INTEGER! key, userId INTEGER->users.id, type INTEGER!, name TEXT, amount INTEGER!
currencyAccrualResources: id INTEGER! key, userId INTEGER->users.id, type INTEGER!, name TEXT, amount INTEGER!, source TEXT, timestamp INTEGER!
deviceIdentifiers: id INTEGER! key, projectId INTEGER!->projects.id, deviceIdentifier TEXT, previousDeviceIdentifier TEXT, pelorinoId INTEGER, crossPlatformPelorinoId INTEGER, uuid TEXT, pelorinoIdTimestamp INTEGER
realPaymentMarks: id INTEGER! key, projectId INTEGER->projects.id, orderId TEXT
tutorialMarkEntry: id INTEGER! key, userId INTEGER->users.id, step INTEGER
peopleCards: id INTEGER! key, userId INTEGER->users.id, json TEXT, updated INTEGER!=0, cleared INTEGER!=0, changedKeys TEXT
messagingCategory: id INTEGER! key, identifier TEXT, buttons TEXT
sdkTools: id INTEGER! key, metadata TEXT='[]'
subscriptions: id INTEGER! key, projectId INTEGER!->projects.id, products TEXT='[]', restoredTransaction TEXT='[]', alreadyRestored INTEGER!=0, productIsChanged INTEGER!=0, alreadySendRestoreEvent INTEGER!=0)";

constexpr const char* usersText = R"(CREATE TABLE users (
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
))";

/// A file of the first generation, which had neither `subscriptions` nor the last column of
/// `deviceIdentifiers`.
void makeFirstGeneration(const DatabaseFile& file) {
  SQLiteProvider("key", file.support());
  file.run(
      "DROP TABLE subscriptions; ALTER TABLE deviceIdentifiers DROP COLUMN pelorinoIdTimestamp;"
      "INSERT INTO deviceIdentifiers (projectId, deviceIdentifier, uuid) VALUES (1, 'd', 'u');"
      "INSERT INTO events (code, userId, eventJson) VALUES ('ce', 1, '{}'), ('lu', 1, '{}');"
      "PRAGMA user_version = 0");
}

TEST(SQLiteProvider, AFirstStartMakesFolderFileAndSchema) {
  const DatabaseFile file("Mes donn\u00e9es \U0001F3AE");
  LogCapture log;
  EXPECT_EQ(failureToOpen(file.support()), "");
  EXPECT_EQ(
      log.lines(),
      (std::vector<std::string>{
          "DEBUG [Database Module] It's a clean launch of the SDK",
          "DEBUG [Database Module] Successfully opened connection to database at " + file.path()}));
  EXPECT_EQ(file.run("PRAGMA user_version"), "1");
  EXPECT_EQ(file.run(describeTables), allTables);
  EXPECT_EQ(file.run("SELECT sql FROM sqlite_master WHERE name = 'users'"), usersText);
  EXPECT_EQ(rightsOf(file.folder()), 0700);
  EXPECT_EQ(rightsOf(file.path()), 0600);
  EXPECT_EQ(SQLiteProvider::folderPath(file.support()), file.folder());

  EXPECT_EQ(failureToOpen(file.support()), "");
  EXPECT_EQ(log.lines()[2], "DEBUG [Database Module] Trying to load database");
}

TEST(SQLiteProvider, AFileOfTheFirstGenerationGainsWhatIsNewAndLosesNothing) {
  const DatabaseFile file;
  makeFirstGeneration(file);
  EXPECT_EQ(failureToOpen(file.support()), "");
  EXPECT_EQ(file.run("PRAGMA user_version"), "1");
  EXPECT_EQ(file.run(describeTables), allTables);
  EXPECT_EQ(file.run("SELECT * FROM deviceIdentifiers"), "1|1|d||||u|");
  EXPECT_EQ(file.run("SELECT id, code FROM events"), "1|ce\n2|lu");
}

TEST(SQLiteProvider, AnUpgradeThatWasCutShortIsFinished) {
  for (const char* cut : {"DROP TABLE subscriptions", "DROP TABLE sdkTools", "SELECT 1"}) {
    SCOPED_TRACE(cut);
    const DatabaseFile file;
    SQLiteProvider("key", file.support());
    file.run(std::string(cut) + "; PRAGMA user_version = 0");
    EXPECT_EQ(failureToOpen(file.support()), "");
    EXPECT_EQ(file.run("PRAGMA user_version"), "1");
    EXPECT_EQ(file.run("SELECT count(*) FROM sqlite_master WHERE name IN "
                       "('subscriptions', 'sdkTools')"),
              "2");
  }
}

TEST(SQLiteProvider, OnlyVersion0RunsStatements) {
  struct Case {
    const char* version;
    const char* failure;
    const char* after;
  };
  const Case cases[] = {
      {"1", "", "1"},
      {"2", "", "1"},
      {"3", "The database has the unknown version 3 (code: 1)", "3"},
      {"-1", "The database has the unknown version -1 (code: 1)", "-1"},
      {"2147483647", "The database has the unknown version 2147483647 (code: 1)", "2147483647"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.version);
    const DatabaseFile file;
    file.run(std::string("CREATE TABLE other (x); PRAGMA user_version = ") + c.version);
    const std::string before = bytesOf(file.path());
    EXPECT_EQ(failureToOpen(file.support()), c.failure);
    EXPECT_EQ(file.run("PRAGMA user_version"), c.after);
    EXPECT_EQ(file.run("SELECT name FROM sqlite_master"), "other");
    const bool isRefused = *c.failure != 0;
    EXPECT_EQ(bytesOf(file.path()) == before, isRefused || std::string(c.version) == "1");
  }
}

TEST(SQLiteProvider, RefusesWhatItCannotOpen) {
  EXPECT_EQ(failureToOpen(std::nullopt), "SQLite error (code: 1)");
  EXPECT_EQ(SQLiteProvider::folderPath(std::nullopt), std::nullopt);

  const DatabaseFile noFolder;
  std::ofstream(noFolder.support()) << "a file";
  EXPECT_NE(failureToOpen(noFolder.support()).find("(code: 14)"), std::string::npos);

  const DatabaseFile noFile;
  std::filesystem::create_directories(noFile.path());
  EXPECT_EQ(failureToOpen(noFile.support()), "SQLite error (code: 14)");

  const DatabaseFile corrupt;
  std::filesystem::create_directories(corrupt.folder());
  std::ofstream(corrupt.path()) << std::string(4096, 'x');
  EXPECT_EQ(failureToOpen(corrupt.support()), "file is not a database (code: 26)");
  EXPECT_EQ(bytesOf(corrupt.path()), std::string(4096, 'x'));
}

// ---- Operations ----

class SQLiteProviderOperations : public ::testing::Test {
 protected:
  std::optional<RowId> insertProject(const char* key) {
    const ColumnValue content[] = {{"applicationKey", std::string(key)}, {"savedTime", {}}};
    return provider_.insert("projects", content);
  }

  DatabaseFile file_;
  SQLiteProvider provider_{"key", file_.support()};
  LogCapture log_{PLRLogLevel::error};
};

TEST_F(SQLiteProviderOperations, WriteReadAndDeleteRows) {
  EXPECT_EQ(insertProject("a"), 1);
  EXPECT_EQ(insertProject("b"), 2);
  const ColumnValue other[] = {{"applicationKey", std::string("c")}, {"isMigrated", true}};
  EXPECT_EQ(provider_.insert("projects", other), 3);

  const std::optional<SQLiteValue> b = std::string("b");
  const ColumnValue time[] = {{"savedTime", std::int64_t{5}}};
  EXPECT_EQ(provider_.update("projects", time, "applicationKey=?", {&b, 1}), 1);
  const std::optional<SQLiteValue> none = std::string("none");
  EXPECT_EQ(provider_.update("projects", time, "applicationKey=?", {&none, 1}), 0);

  std::string rows;
  EXPECT_TRUE(provider_.query({.tableName = "projects p",
                               .projection = {"p.applicationKey", "p.savedTime"},
                               .join = "projects q ON q.id = p.id",
                               .selection = "p.id > ?",
                               .selectionArgs = {std::int64_t{1}},
                               .groupBy = "p.id",
                               .sortOrder = "p.id DESC",
                               .limit = 2},
                              [&](const Cursor& row) {
                                rows += row.text(0).value() +
                                        std::to_string(row.integer(1).value_or(0)) + " ";
                              }));
  EXPECT_EQ(rows, "c0 b5 ");

  EXPECT_EQ(provider_.deleteRows("projects", "applicationKey=?", {&b, 1}), 1);
  EXPECT_EQ(file_.run("SELECT applicationKey, isMigrated FROM projects"), "a|0\nc|1");
  provider_.clear("projects");
  EXPECT_EQ(file_.run("SELECT count(*) FROM projects"), "0");
  EXPECT_TRUE(log_.lines().empty());
}

TEST_F(SQLiteProviderOperations, FailuresAreLoggedAndShowAsEmptyResults) {
  EXPECT_TRUE(insertProject("a"));
  EXPECT_EQ(insertProject("a"), std::nullopt);
  const ColumnValue wrong[] = {{"noColumn", std::int64_t{5}}};
  EXPECT_EQ(provider_.update("projects", wrong, "id=1", {}), std::nullopt);
  EXPECT_EQ(provider_.deleteRows("projects", "id=", {}), 0);
  provider_.clear("noTable");
  EXPECT_FALSE(provider_.query({.tableName = "noTable"}, [](const Cursor&) {}));

  int rows = 0;
  EXPECT_FALSE(provider_.query({.tableName = "projects"}, [&](const Cursor& row) {
    ++rows;
    throw SQLiteError::error("row", static_cast<int>(row.integer(0).value()));
  }));
  EXPECT_EQ(rows, 1);
  EXPECT_EQ(log_.lines(),
            (std::vector<std::string>{
                "ERROR [Database Module] Error in inserting: UNIQUE constraint failed: "
                "projects.applicationKey (code: 19)",
                "ERROR [Database Module] Error in inserting: SQLite error (code: 1)",
                "ERROR [Database Module] Error in delete: SQLite error (code: 1)",
                "ERROR [Database Module] Error in delete: SQLite error (code: 1)",
                "ERROR [Database Module] Error in query: SQLite error (code: 1)",
                "ERROR [Database Module] Error in query: row (code: 1)",
            }));
}

TEST_F(SQLiteProviderOperations, ALockedFileFailsAtOnceAndRecovers) {
  sqlite3* other = nullptr;
  ASSERT_EQ(sqlite3_open(file_.path().c_str(), &other), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
  EXPECT_EQ(insertProject("a"), std::nullopt);
  EXPECT_FALSE(provider_.query({.tableName = "projects"}, [](const Cursor&) {}));
  EXPECT_EQ(failureToOpen(file_.support()), "database is locked (code: 5)");
  sqlite3_close(other);
  EXPECT_EQ(insertProject("a"), 1);
}

TEST_F(SQLiteProviderOperations, AFullDiskFailsAndRecovers) {
  const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
  rlimit oldLimit{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &oldLimit), 0);
  rlimit full = oldLimit;
  full.rlim_cur = std::filesystem::file_size(file_.path());
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &full), 0);
  const std::string big(100'000, 'x');
  const auto stored = insertProject(big.c_str());
  setrlimit(RLIMIT_FSIZE, &oldLimit);
  std::signal(SIGXFSZ, oldHandler);

  EXPECT_EQ(stored, std::nullopt);
  EXPECT_EQ(log_.lines().size(), 1U);
  EXPECT_EQ(insertProject("a"), 1);
  EXPECT_EQ(file_.run("PRAGMA integrity_check"), "ok");
}

}  // namespace
}  // namespace pelorino
