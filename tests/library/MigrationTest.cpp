#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "LegacyArchive.h"
#include "LibraryTest.h"
#include "SDKMigrationManager.h"

namespace pelorino {
namespace {

class MigrationTest : public LibraryTest {
 protected:
  void leave(const std::string& path, const std::string& content) const {
    const std::filesystem::path file_ = file.support() + "/" + path;
    std::filesystem::create_directories(file_.parent_path());
    std::ofstream(file_, std::ios::binary) << content;
  }
  void leaveArchive(const std::string& content) const {
    leave("pelorino_key/UsersStorage", content);
  }
  void leaveJson(const std::string& content) const {
    leave("pelorino/key/migrationData.json", content);
  }

  std::string users() const {
    return rows(
        "SELECT users.id, userId, previousUserId, level, isDefaultUser, "
        "activeUserId = users.id FROM users, projects ORDER BY users.id");
  }
  std::string project() const { return rows("SELECT trackingAvailable, isMigrated FROM projects"); }
  std::string cards() const {
    return rows("SELECT userId, json, updated, cleared, changedKeys FROM peopleCards ORDER BY id");
  }
  std::string marks() const {
    return rows("SELECT orderId FROM realPaymentMarks ORDER BY id") + "/" +
           rows("SELECT step FROM tutorialMarkEntry ORDER BY id");
  }
  /// What the start says of a migration.
  std::string told() {
    std::string found;
    for (const std::string& line : linesOf([this] { start(); })) {
      if (line.find("igrat") != std::string::npos || line.find("passed over") != std::string::npos)
        found += line + "\n";
    }
    return found;
  }
};

const std::string json =
    R"({"deviceId":"d","userId":"ann","prevUserId":"old","trackingAvailable":false,"level":4,)"
    R"("userCard":{"b":true,"i":2.0,"d":0.5,"n":null,"list":[1],"t":"x"},)"
    R"("transactionIds":["t2","t3"],"tutorCompletedSteps":[5]})";

TEST_F(MigrationTest, AnArchiveBecomesTheActiveUserWithCardAndMarks) {
  for (const bool asXml : {false, true}) {
    SCOPED_TRACE(asXml ? "XML" : "binary");
    leaveArchive(archiveOfAnn(asXml));
    EXPECT_EQ(told(),
              "DEBUG Completely migrate data with data: \n\tuserId: ann\n\tprevUserId: anna\n"
              "\ttrackingAvailable: true\n\tlevel: 7\n\t userCardInfo: \n\t\tflag: true\n"
              "\t\tname: Ann\n\t\tnone: nil\n\t\tratio: 0.5\n\t\twhole: 2\n\t\twins: -3\n"
              "\ttransactionIds: \n\t\tt1,\n\t\tt2\n\ttutorCompletedSteps: -1, 3\n\n");
    EXPECT_EQ(users(), "1|ann|anna|7|0|1");
    EXPECT_EQ(project(), "1|1");
    EXPECT_EQ(cards(), R"(1|{"flag":true,"name":"Ann","ratio":0.5,"whole":2,"wins":-3}|0|0|)");
    EXPECT_EQ(marks(), "t1\nt2/-1\n3");
    PLRAnalytics::tutorial(3);
    PLRAnalytics::realCurrencyPayment("t1", 1, "p", "USD");
    EXPECT_EQ(marks(), "t1\nt2/-1\n3") << "they count as reported";
    stop();
    leaveArchive("changed");
    EXPECT_EQ(told(), "") << "a marked project does not look again";
    EXPECT_EQ(users(), "1|ann|anna|7|0|1");
    stop();
    std::filesystem::remove_all(file.support());
  }
}

TEST_F(MigrationTest, TheEnginesFileComesSecondAndAddsToAKnownUser) {
  leaveArchive(archiveOfAnn());
  leaveJson(json);
  PLRAnalyticsConfiguration bob;
  bob.userId = "bob";
  start(bob);
  EXPECT_EQ(users(), "1|ann|anna|7|0|0\n2|bob||1|0|1") << "a user that the host names wins";
  EXPECT_EQ(project(), "0|1");
  EXPECT_EQ(rows("SELECT json FROM peopleCards WHERE userId = 1 ORDER BY id DESC LIMIT 1"),
            R"({"b":true,"d":0.5,"i":2,"n":null,"t":"x"})");
  EXPECT_EQ(marks(), "t1\nt2\nt2\nt3/-1\n3\n5");
  stop();
}

TEST_F(MigrationTest, WhatIsMissingOrWrongIsPassedOverAndTriedAgain) {
  const auto archived = [](const LegacyArchive::Fields& user) {
    LegacyArchive archive;
    archive.add(std::string("ann"));  // Reference 1.
    const auto ann = archive.add("DataStorage", user);
    return archive.bytes(
        archive.add("UsersStorages", {{"activeUser", archive.add(std::string("a"))},
                                      {"dataStorages", archive.dictionary({{"a", ann}})}}));
  };
  const auto jsonWithout = [](const std::string& field, const std::string& value) {
    std::string text = json;
    return text.erase(text.find("\"" + field + "\":" + value), field.size() + value.size() + 4);
  };
  const std::string passedOver = "DEBUG The data of an earlier version in ";
  const struct {
    const char* label;
    std::string archive;
    std::string json;
    std::string told;
  } cases[] = {
      {"no user in the archive", archived({{"level", std::int64_t{1}}}), "",
       "ERROR Migration failed: userId not found\n"},
      {"no user, no level in the file", "",
       R"({"trackingAvailable":true,"userCard":{},)"
       R"("transactionIds":[],"tutorCompletedSteps":[]})",
       "ERROR Migration failed: userId not found\n"},
      {"no level in the file", "", jsonWithout("level", "4"),
       "ERROR Migration failed: level not found\n"},
      {"no list of orders", "", jsonWithout("transactionIds", R"(["t2","t3"])"),
       passedOver + "migrationData.json are passed over: The key transactionIds is missing\n"},
      {"no archive", "bplist00", "{",
       passedOver + "UsersStorage are passed over: cut off\n" + passedOver +
           "migrationData.json are passed over: The text is not valid JSON: incomplete JSON\n"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.label);
    if (!c.archive.empty()) leaveArchive(c.archive);
    if (!c.json.empty()) leaveJson(c.json);
    EXPECT_EQ(told(), c.told);
    EXPECT_EQ(project(), "1|0");
    EXPECT_EQ(cards().find('x'), std::string::npos);
    stop();
    std::filesystem::remove_all(file.support());
  }
  // The values of another type are those of a missing field.
  leaveArchive(archived({{"userId", std::uint64_t{1}},
                         {"level", 2.5},
                         {"transactionIds", std::int64_t{1}},
                         {"tutorCompletedSteps", std::uint64_t{99}}}));
  start();
  EXPECT_EQ(users(), "1|ann||0|0|1");
  EXPECT_EQ(project(), "0|1");
  EXPECT_EQ(marks(), "/");
}

/// A binary list of these objects, the first one its root.
std::string binaryList(const std::vector<std::string>& objects) {
  std::string bytes = "bplist00", places;
  for (const std::string& object : objects) {
    for (const int shift : {24, 16, 8, 0}) places += static_cast<char>(bytes.size() >> shift);
    bytes += object;
  }
  const std::size_t table = bytes.size();
  bytes += places + std::string(6, '\0') + '\4' + '\2';
  for (const std::size_t number : {objects.size(), std::size_t{0}, table}) {
    for (int shift = 56; shift >= 0; shift -= 8) bytes += static_cast<char>(number >> shift);
  }
  return bytes;
}

std::string listOf(const std::vector<int>& references) {
  std::string bytes(1, static_cast<char>(0xA0U | references.size()));
  for (const int one : references) bytes += {static_cast<char>(one >> 8), static_cast<char>(one)};
  return bytes;
}

TEST_F(MigrationTest, HostileFilesCostLittleAndAreRefused) {
  std::vector<std::string> laughs, chain;
  for (int i = 1; i <= 20; ++i) laughs.push_back(listOf(std::vector<int>(14, i)));
  laughs.emplace_back("\x51x");
  for (int i = 1; i <= 40; ++i) chain.push_back(listOf({i}));
  chain.emplace_back("\x51x");
  const std::string longText =
      std::string("\x5f\x12\x00\x04\x00\x00", 6) + std::string(1 << 18, 'x');
  std::string deepXml = "<plist>", manyTags = "<plist><array>";
  for (int i = 0; i < 100; ++i) deepXml += "<array>";
  for (int i = 0; i < 300'000; ++i) manyTags += "<true/>";
  const struct {
    std::string bytes;
    const char* why;
  } cases[] = {
      {"", "no property list"},
      {"text", "no property list"},
      {binaryList(laughs), "too many values"},
      {binaryList({listOf(std::vector<int>(14, 1)), listOf(std::vector<int>(14, 2)), longText}),
       "too long texts"},
      {binaryList(chain), "nested too deep"},
      {binaryList({listOf({1}), listOf({0})}), "references in a circle"},
      {binaryList({listOf({7})}), "a reference to nothing"},
      {binaryList({std::string("\x14", 1) + std::string(16, '\xff')}), "a number out of range"},
      {binaryList({listOf({})}), "no keyed archive"},
      {archiveOfAnn().substr(0, 60), "no property list"},
      {deepXml, "nested too deep"},
      {manyTags, "too many values"},
      {"<plist><!-- --><dict/></plist>", "no property list"},
      {"<plist><dict/></plist>", "no keyed archive"},
  };
  for (const auto& c : cases) {
    try {
      static_cast<void>(migrationObjectOf(c.bytes));
      ADD_FAILURE() << c.why;
    } catch (const LegacyDataError& error) {
      EXPECT_STREQ(error.what(), c.why);
    }
  }
  // Objects that refer to each other and to themselves.
  LegacyArchive circle;
  const auto self = circle.add("NSDictionary", {{"NS.keys", std::vector<std::uint64_t>{3}},
                                                {"NS.objects", std::vector<std::uint64_t>{2}}});
  circle.add(std::string("a"));
  const auto root =
      circle.add("UsersStorages", {{"activeUser", std::uint64_t{3}}, {"dataStorages", self}});
  EXPECT_THROW(static_cast<void>(migrationObjectOf(circle.bytes(root))), LegacyDataError);
}

TEST_F(MigrationTest, FilesThatCannotBeReadAreToldAndNeverWaitedFor) {
  leaveArchive("");
  const std::string path = file.support() + "/pelorino_key/UsersStorage";
  std::filesystem::remove(path);
  ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
  leaveJson(std::string(SDKMigrationManager::maximalFile + 1, ' '));
  EXPECT_EQ(told(),
            "DEBUG The data of an earlier version in UsersStorage are passed over: Not a regular "
            "file\nDEBUG The data of an earlier version in migrationData.json are passed over: "
            "File too large\n");
}

}  // namespace
}  // namespace pelorino
