#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <regex>

#include "RealClock.h"
#include "RealFacts.h"
#include "RealFiles.h"
#include "RealRandom.h"
#include "SystemTestSupport.h"

namespace pelorino {
namespace {

class TimeZone {
 public:
  explicit TimeZone(const char* zone) { ::setenv("TZ", zone, 1); }
  ~TimeZone() { ::unsetenv("TZ"); }
  TimeZone(const TimeZone&) = delete;
  TimeZone& operator=(const TimeZone&) = delete;
};

TEST(RealFacts, SecondsFromGmtAreThoseOfTheInstant) {
  constexpr auto summerTime = "CET-1CEST,M3.5.0,M10.5.0/3";
  const struct {
    const char* label;
    const char* zone;
    std::int64_t milliseconds;
    std::int64_t want;
  } cases[] = {
      {"winter", summerTime, 1704067200000, 3600},
      {"a millisecond before summer", summerTime, 1711846799999, 3600},
      {"summer", summerTime, 1711846800000, 7200},
      {"half hours", "IST-5:30", 1704067200000, 19800},
      {"west", "EST5", 1704067200000, -18000},
      {"before 1970", "IST-5:30", -1, 19800},
      {"the first of all", "EST5", INT64_MIN, -18000},
  };
  RealFacts facts;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.label);
    const TimeZone zone(c.zone);
    EXPECT_EQ(facts.secondsFromGmt(c.milliseconds), c.want);
  }
}

TEST(RealFacts, TellsOfThisProcessAndMachine) {
  RealFacts facts;
  EXPECT_EQ(facts.executableName(), "system_tests");
  EXPECT_TRUE(facts.homeFolder().starts_with('/'));
  EXPECT_FALSE(facts.machine().empty());
  EXPECT_TRUE(std::regex_search(facts.systemVersion(), std::regex("^[0-9]+[.]")));
  const std::string id = facts.machineId().value_or(std::string(32, '0'));
  EXPECT_TRUE(std::regex_match(id, std::regex("[0-9a-f]{32}"))) << id;
  ::setenv("PELORINO_TEST", "", 1);
  EXPECT_EQ(facts.environment("PELORINO_TEST"), "");
  ::unsetenv("PELORINO_TEST");
  EXPECT_EQ(facts.environment("PELORINO_TEST"), std::nullopt);
}

TEST(RealRandom, MakesRandomUuidsInUpperCase) {
  const std::regex version4("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}");
  RealRandom random;
  const std::string one = random.uuid();
  EXPECT_TRUE(std::regex_match(one, version4)) << one;
  EXPECT_NE(one, random.uuid());
}

TEST(RealClock, CountsMillisecondsSince1970) {
  const std::int64_t seconds = ::time(nullptr);
  const std::int64_t now = RealClock().milliseconds();
  EXPECT_GE(now, (seconds - 1) * 1000);
  EXPECT_LE(now, (seconds + 60) * 1000);
}

TEST(RealFiles, MakesFoldersForTheOwnerAlone) {
  ScratchFolder folder;
  RealFiles files;
  EXPECT_EQ(files.createFolders(folder.file("a//b é/c/")), std::nullopt);
  EXPECT_EQ(files.createFolders(folder.file("a/b é/c")), std::nullopt);
  EXPECT_TRUE(files.exists(folder.file("a/b é/c")));
  std::ofstream(folder.file("plain")) << "x";
  EXPECT_EQ(files.createFolders(folder.file("plain")), "File exists");
  EXPECT_EQ(files.createFolders(folder.file("plain/below")), "Not a directory");
  EXPECT_EQ(files.createFolders(folder.file(std::string("z\0ero", 5))), "Invalid argument");
  EXPECT_EQ(files.createFolders(""), "Invalid argument");
  EXPECT_FALSE(files.exists(folder.file("z")));
}

TEST(RealFiles, ReadsAFileUpToALimit) {
  ScratchFolder folder;
  RealFiles files;
  const std::string path = folder.file("data");
  const std::string content(40000, '\0');
  std::ofstream(path) << content;
  ASSERT_EQ(::mkfifo(folder.file("pipe").c_str(), 0600), 0);
  EXPECT_EQ(files.read(path, content.size()), content);
  EXPECT_EQ(files.read(path, content.size() - 1), std::nullopt);
  EXPECT_EQ(files.read(folder.file("missing"), 1), std::nullopt);
  EXPECT_EQ(files.read(folder.file("."), 1), std::nullopt);
  EXPECT_EQ(files.read(folder.file("pipe"), 1), std::nullopt);
}

TEST(RealFiles, APrivateFileIsMadeOrMadePrivate) {
  ScratchFolder folder;
  RealFiles files;
  std::ofstream(folder.file("old")) << "kept";
  for (const char* name : {"old", "new"}) {
    files.createPrivateFile(folder.file(name));
    struct stat found {};
    ASSERT_EQ(::stat(folder.file(name).c_str(), &found), 0) << name;
    EXPECT_EQ(found.st_mode & 07777U, 0600U) << name;
  }
  EXPECT_EQ(files.read(folder.file("old"), 10), "kept");
}

}  // namespace
}  // namespace pelorino
