#include <sqlite3.h>

#include <filesystem>
#include <fstream>

#include "BlackBoxTest.h"

namespace pelorino::blackbox {
namespace {

/// Another process's connection to the database, which holds it for itself alone.
class Holder {
 public:
  explicit Holder(const DatabaseFile& file) {
    EXPECT_EQ(sqlite3_open(file.path().c_str(), &database_), SQLITE_OK);
    sqlite3_busy_timeout(database_, 10'000);
    EXPECT_EQ(sqlite3_exec(database_, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
  }
  ~Holder() { sqlite3_close(database_); }
  Holder(const Holder&) = delete;
  Holder& operator=(const Holder&) = delete;

 private:
  sqlite3* database_ = nullptr;
};

class Start : public BlackBoxTest {};

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
  ASSERT_TRUE(first->deliver());
  first->customEvent("left behind");
  ASSERT_TRUE(first->drain());
  first->kill();

  second.run(R"({"op":"engine.destroySDK"})");
  ASSERT_TRUE(second.drain()) << "a start that overtakes the teardown is refused";
  second.initialize();
  second.customEvent("of the second");
  ASSERT_TRUE(second.deliver());
  EXPECT_EQ(second.end(), 0);
  EXPECT_EQ(backend().names(),
            (std::vector<std::string>{"of the first", "left behind", "of the second"}));
}

TEST_F(Start, IsRefusedWhereTheDatabaseCannotBe) {
  const std::string plainFile = folder_.file("plain file");
  std::ofstream(plainFile) << "no folder";
  const DatabaseFile corrupt;
  const std::string garbage(8192, 'x');
  std::filesystem::create_directories(corrupt.folder());
  std::ofstream(corrupt.path()) << garbage;
  const DatabaseFile held;
  held.run("CREATE TABLE other (id INTEGER)");
  const Holder holder(held);
  // Not even root writes below /proc.
  for (const std::string& folder :
       {std::string("/proc/pelorino"), plainFile, corrupt.support(), held.support()}) {
    SCOPED_TRACE(folder);
    HostProcess host(file_, url_, {{"supportDirectory", folder}});
    host.initialize();
    host.customEvent("lost");
    EXPECT_TRUE(host.logs("Can't init submodules"));
    EXPECT_TRUE(host.logs("In the customEvent(_:_:) method an error has occurred: "));
    EXPECT_EQ(host.end(), 0);
  }
  EXPECT_EQ(std::filesystem::file_size(corrupt.path()), garbage.size()) << "left alone";
}

TEST_F(Start, LivesWithADatabaseThatIsLockedForAWhile) {
  const auto host = startedHost();
  {
    const Holder holder(file_);
    host->customEvent("while locked");
    EXPECT_TRUE(host->logs("[Database Module] Error in inserting: "));
    EXPECT_TRUE(host->drain());
  }
  host->customEvent("afterwards");
  ASSERT_TRUE(host->deliver());
  EXPECT_EQ(backend().names().back(), "afterwards");
  EXPECT_EQ(host->end(), 0);
}

}  // namespace
}  // namespace pelorino::blackbox
