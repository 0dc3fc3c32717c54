#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "DatabaseFile.h"
#include "LogCapture.h"
#include "SQLiteError.h"
#include "SQLiteProvider.h"
#include "SqlText.h"

namespace pelorino {
namespace {

const Schema schema{
    .version = 1,
    .map = {{{"CREATE TABLE IF NOT EXISTS projects (id INTEGER PRIMARY KEY, applicationKey TEXT "
              "UNIQUE, isMigrated INTEGER)"},
             {"CREATE TABLE IF NOT EXISTS events (id INTEGER PRIMARY KEY, code TEXT)"}},
            {{"CREATE TABLE IF NOT EXISTS subscriptions (id INTEGER PRIMARY KEY)"},
             {"ALTER TABLE projects ADD COLUMN savedTime INTEGER", "projects", "savedTime"}}}};

constexpr const char* describeTables =
    "SELECT m.name || ': ' || group_concat(p.name, ', ') FROM sqlite_master m, "
    "pragma_table_info(m.name) p WHERE m.type = 'table' GROUP BY m.name ORDER BY m.name";
constexpr const char* allTables =
    "events: id, code\n"
    "projects: id, applicationKey, isMigrated, savedTime\n"
    "subscriptions: id";

/// What creation throws, as it is printed; empty when it throws nothing.
std::string failureToOpen(const std::optional<std::string>& support) {
  try {
    SQLiteProvider provider("key", support, schema);
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
       {"ALTER TABLE projects DROP COLUMN savedTime; DROP TABLE subscriptions",
        "DROP TABLE subscriptions", "SELECT 'an upgrade cut short'"}) {
    SCOPED_TRACE(difference);
    const DatabaseFile file;
    EXPECT_EQ(failureToOpen(file.support()), "");
    file.run(
        "INSERT INTO projects (applicationKey, isMigrated) VALUES ('a', 1);"
        "INSERT INTO events (code) VALUES ('ce'), ('lu');"
        "PRAGMA user_version = 0;" +
        std::string(difference));
    EXPECT_EQ(failureToOpen(file.support()), "");
    EXPECT_EQ(file.run("PRAGMA user_version"), "1");
    EXPECT_EQ(file.run(describeTables), allTables);
    EXPECT_EQ(file.run("SELECT * FROM projects"), "1|a|1|");
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
  static TableStatements statements(const std::vector<std::string_view>& columns) {
    return {.tableName = "projects",
            .insert = SqlText::insert("projects", columns),
            .update = SqlText::update("projects", columns, "applicationKey=?")};
  }

  std::optional<std::int64_t> insertProject(const char* key) {
    const std::optional<SQLiteValue> content[] = {std::string(key), true};
    return provider_.insert(statements({"applicationKey", "isMigrated"}), content);
  }

  DatabaseFile file_;
  SQLiteProvider provider_{"key", file_.support(), schema};
  LogCapture log_{PLRLogLevel::error};
};

TEST_F(SQLiteProviderOperations, WriteReadAndDeleteRows) {
  for (const char* key : {"a", "b", "c"}) EXPECT_TRUE(insertProject(key));
  const std::optional<SQLiteValue> b = std::string("b");
  const std::optional<SQLiteValue> time[] = {std::int64_t{5}, false, b};
  EXPECT_EQ(provider_.update(statements({"savedTime", "isMigrated"}), time), 1);

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
  const std::optional<SQLiteValue> two[2];
  EXPECT_EQ(provider_.update(statements({"noColumn"}), two), std::nullopt);
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
