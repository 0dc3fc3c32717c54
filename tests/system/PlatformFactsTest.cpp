#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cctype>
#include <ctime>
#include <fstream>
#include <regex>

#include "RealFacts.h"
#include "RealFiles.h"
#include "RealSystem.h"
#include "TemporaryFolder.h"

namespace pelorino {
namespace {

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
      {"half hours, before 1970", "IST-5:30", -1, 19800},
      {"the first of all", "EST5", INT64_MIN, -18000},
  };
  RealFacts facts;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.label);
    ::setenv("TZ", c.zone, 1);
    EXPECT_EQ(facts.secondsFromGmt(c.milliseconds), c.want);
  }
  ::unsetenv("TZ");
}

TEST(RealFacts, TellsOfThisProcessAndMachine) {
  RealFacts facts;
  EXPECT_EQ(facts.executableName(), "system_tests");
  EXPECT_TRUE(facts.homeFolder().starts_with('/'));
  EXPECT_NE(facts.machine(), "");
  EXPECT_TRUE(std::isdigit(facts.systemVersion().at(0)));
  const std::string id = facts.machineId().value_or(std::string(32, '0'));
  EXPECT_TRUE(std::regex_match(id, std::regex("[0-9a-f]{32}"))) << id;
  const std::regex version4("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}");
  RealRandom random;
  const std::string one = random.uuid();
  EXPECT_TRUE(std::regex_match(one, version4)) << one;
  EXPECT_NE(one, random.uuid());
  EXPECT_LE(std::abs(RealClock().milliseconds() - ::time(nullptr) * 1000), 60000);
}

TEST(RealFiles, ReadsFilesUpToALimitAndSaysWhatIsNoFolder) {
  const TemporaryFolder folder;
  RealFiles files;
  const std::string content(40000, '\0');
  std::ofstream(folder.file("plain")) << content;
  EXPECT_EQ(files.createFolders(folder.file("plain/below")), "Not a directory");
  EXPECT_EQ(files.createFolders(folder.file(std::string("z\0ero", 5))), "Invalid argument");

  EXPECT_EQ(files.read(folder.file("plain"), content.size()).content, content);
  ASSERT_EQ(::mkfifo(folder.file("pipe").c_str(), 0600), 0);
  const std::pair<const char*, const char*> unreadable[] = {
      {"missing", "No such file or directory"},
      {".", "Is a directory"},
      {"pipe", "Not a regular file"},
      {"plain", "File too large"}};
  for (const auto& [name, failure] : unreadable) {
    const auto reading = files.read(folder.file(name), 1);
    EXPECT_EQ(reading.content, std::nullopt);
    EXPECT_EQ(reading.failure, failure);
  }
}

}  // namespace
}  // namespace pelorino
