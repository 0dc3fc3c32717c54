#include <sqlite3.h>

#include <filesystem>
#include <fstream>

#include "BlackBoxTest.h"

namespace pelorino::blackbox {
namespace {

class Start : public BlackBoxTest {
 protected:
  /// A library that cannot start refuses what it is told and leaves the host in peace.
  void expectRefused(HostProcess& host) {
    host.initialize();
    host.customEvent("lost");
    EXPECT_TRUE(host.logs("Can't init submodules"));
    EXPECT_TRUE(
        host.logs("In the customEvent(_:_:) method an error has occurred: "
                  "The SDK is not initialized yet!"));
    EXPECT_EQ(host.end(), 0);
  }
};

TEST_F(Start, WaitsInTheBackgroundForTheApplicationToComeForward) {
  HostProcess host(file_, url_, {{"applicationState", "background"}});
  host.initialize();
  for (const char* name : {"one", "two", "three"}) host.customEvent(name);
  host.run(R"({"op":"getUserId"})");
  host.run(R"({"op":"drain","limitMs":200})");
  EXPECT_TRUE(host.logs("the queue has not run within 200 ms"));
  EXPECT_FALSE(std::filesystem::exists(file_.path()));
  EXPECT_TRUE(host.linesWith("getUserId").empty());

  host.run(R"({"op":"host.didBecomeActive"})");
  ASSERT_TRUE(host.drain());
  EXPECT_FALSE(host.linesWith("getUserId").empty());
  ASSERT_TRUE(deliver(host));
  EXPECT_EQ(backend().names(), (std::vector<std::string>{"one", "two", "three"}));
  EXPECT_EQ(host.end(), 2) << "the drain that could not end counts as a bad line";
}

TEST_F(Start, MakesItsFolderWhateverTheNameAndHoweverDeep) {
  for (const char* name : {"with blanks", "Jürgens Spiele/日本語/🐢", "quote's \"double\" %41"}) {
    SCOPED_TRACE(name);
    const DatabaseFile file{name};
    HostProcess host(file, url_);
    host.initialize();
    host.run(R"({"op":"sdkFolderPath"})");
    EXPECT_EQ(host.resultOf("sdkFolderPath"), boost::json::string(file.folder()));
    host.customEvent(name);
    ASSERT_TRUE(host.drain());
    EXPECT_EQ(file.run("SELECT count(*) FROM events WHERE code = 'ce'"), "1");
    EXPECT_EQ(host.end(), 0);
  }
}

TEST_F(Start, IsRefusedWhileAnotherProcessUsesTheStore) {
  const auto first = startedHost();
  HostProcess second(file_, url_);
  second.initialize();
  EXPECT_TRUE(second.logs("pelorino.lock: another process has locked it"));
  EXPECT_TRUE(second.logs("Can't init submodules"));
  second.customEvent("refused");
  ASSERT_TRUE(second.drain());

  first->customEvent("of the first");
  ASSERT_TRUE(deliver(*first));
  first->customEvent("left behind");
  ASSERT_TRUE(first->drain());
  first->kill();

  second.run(R"({"op":"engine.destroySDK"})");
  ASSERT_TRUE(second.drain()) << "a start that overtakes the teardown is refused";
  second.initialize();
  second.customEvent("of the second");
  ASSERT_TRUE(deliver(second));
  EXPECT_EQ(second.end(), 0);
  EXPECT_EQ(backend().names(),
            (std::vector<std::string>{"of the first", "left behind", "of the second"}));
}

TEST_F(Start, IsRefusedWhereTheDatabaseCannotBe) {
  // Not even root writes here.
  HostProcess unwritable(file_, url_, {{"supportDirectory", "/proc/pelorino"}});
  expectRefused(unwritable);

  const std::string plainFile = folder_.file("plain file");
  std::ofstream(plainFile) << "no folder";
  HostProcess inTheWay(file_, url_, {{"supportDirectory", plainFile}});
  expectRefused(inTheWay);
}

TEST_F(Start, IsRefusedByACorruptDatabaseThatItLeavesAlone) {
  std::filesystem::create_directories(file_.folder());
  const std::string garbage(8192, 'x');
  std::ofstream(file_.path()) << garbage;
  HostProcess host(file_, url_);
  expectRefused(host);
  EXPECT_EQ(std::filesystem::file_size(file_.path()), garbage.size());
}

TEST_F(Start, LivesWithADatabaseThatIsLockedForAWhile) {
  const auto host = startedHost();
  sqlite3* other = nullptr;
  ASSERT_EQ(sqlite3_open(file_.path().c_str(), &other), SQLITE_OK);
  sqlite3_busy_timeout(other, 10'000);
  ASSERT_EQ(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
  host->customEvent("while locked");
  EXPECT_TRUE(host->logs("[Database Module] Error in inserting: "));
  EXPECT_TRUE(host->drain());
  sqlite3_close(other);

  host->customEvent("afterwards");
  ASSERT_TRUE(deliver(*host));
  EXPECT_EQ(backend().names().back(), "afterwards");
  EXPECT_EQ(host->end(), 0);
}

TEST_F(Start, IsRefusedWhileAnotherHoldsTheNewDatabase) {
  file_.run("CREATE TABLE other (id INTEGER)");
  sqlite3* other = nullptr;
  ASSERT_EQ(sqlite3_open(file_.path().c_str(), &other), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
  HostProcess host(file_, url_);
  expectRefused(host);
  sqlite3_close(other);
}

}  // namespace
}  // namespace pelorino::blackbox
