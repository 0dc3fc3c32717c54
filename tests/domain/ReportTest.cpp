#include <gtest/gtest.h>

#include <cctype>
#include <memory>
#include <string>
#include <vector>

#include "JsonHelpers.h"
#include "Report.h"

namespace pelorino {
namespace {

using Texts = std::vector<std::string>;

Package packageOf(std::optional<Texts> events) {
  Package package;
  package.language = "en";
  package.sdkVersion = "2.1.2";
  package.sdkCodeVersion = 10;
  package.events = std::move(events);
  return package;
}

constexpr const char* head =
    "{\"language\":\"en\",\"appVersion\":null,\"appBuildVersion\":null,\"sdkVersion\":\"2.1.2\","
    "\"sdkCodeVersion\":10,\"bundle\":null,\"engine\":\"Unreal\",\"events\":";

TEST(Package, EmbedsEventsAsObjects) {
  struct Case {
    const char* label;
    std::optional<Texts> events;
    std::string json;
  };
  const Case cases[] = {
      {"absent", std::nullopt, "[]"},
      {"none", Texts{}, "[]"},
      {"in their order", Texts{"{\"b\":1}", "{\"a\":[]}"}, "[{\"b\":1},{\"a\":[]}]"},
      {"no objects", Texts{"", "[1]", "1", "{\"a\":", "{}x", "{\"a\":\"\xff\"}", "{\"z\":0}"},
       "[{},{},{},{},{},{},{\"z\":0}]"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    EXPECT_EQ(encodeJson(packageOf(c.events)), head + c.json + "}");
  }
}

TEST(Package, ReadsBackWhatItCan) {
  struct Case {
    const char* label;
    std::string json;
    std::optional<Texts> events;  ///< Absent when the package does not read.
  };
  const std::string common =
      "\"language\":null,\"appVersion\":\"1\",\"appBuildVersion\":null,\"bundle\":null";
  const std::string version = ",\"sdkVersion\":\"2\",\"sdkCodeVersion\":10";
  const Case cases[] = {
      {"whole", "{" + common + version + ",\"events\":[{\"a\":\"]}\"}, {}]}",
       Texts{"{\"a\":\"]}\"}", "{}"}},
      {"no events", "{" + common + version + "}", Texts{}},
      {"events of another shape", "{" + common + version + ",\"events\":{}}", Texts{}},
      {"one event of another shape", "{" + common + version + ",\"events\":[{},1]}", Texts{}},
      {"a missing version", "{" + common + ",\"sdkVersion\":\"2\",\"events\":[]}", std::nullopt},
      {"a version of another type",
       "{" + common + ",\"sdkVersion\":2,\"sdkCodeVersion\":10,\"events\":[]}", std::nullopt},
      {"a missing language",
       "{\"appVersion\":null,\"appBuildVersion\":null,\"bundle\":null" + version +
           ",\"events\":[]}",
       std::nullopt},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    const auto packages = from<std::vector<Package>>("[" + c.json + "]");
    ASSERT_EQ(packages.has_value(), c.events.has_value());
    if (packages) {
      EXPECT_EQ(packages->front().events, c.events);
    }
  }
}

TEST(Report, KeepsEventsAndPackageBoundariesInTheStore) {
  const std::vector<Package> packages = {packageOf(Texts{"{\"n\":1}", "{\"n\":2}"}),
                                         packageOf(Texts{"{\"n\":3.50}"})};
  const std::string stored = encodeJson(packages);
  const auto loaded = decodeJson<std::vector<Package>>(stored);
  ASSERT_EQ(loaded.size(), 2U);
  EXPECT_EQ(loaded[0].events, packages[0].events);
  EXPECT_EQ(loaded[1].events, packages[1].events);
  EXPECT_EQ(encodeJson(loaded), stored);
}

TEST(Report, SendsItsPackagesAndNothingElse) {
  const auto report = std::make_shared<Report>(std::vector{packageOf(Texts{"{\"n\":1}"})});
  report->idKey = 5;
  report->userId = 6;
  report->appKey = "key";
  report->identifiers.emplace().deviceId = "device";
  EXPECT_EQ(encodeJson(Reports{{report}}),
            "{\"reports\":[{\"packages\":[" + std::string(head) + "[{\"n\":1}]}]}]}");
  EXPECT_EQ(encodeJson(Reports{{std::make_shared<Report>(std::vector<Package>())}}),
            "{\"reports\":[{\"packages\":[]}]}");
}

TEST(Report, MadeInMemoryHasAUuidOfItsOwn) {
  const Report first{std::vector<Package>()};
  const Report second{std::vector<Package>()};
  EXPECT_NE(first.uuid, second.uuid);
  ASSERT_EQ(first.uuid.size(), 36U);
  for (const char c : first.uuid) {
    EXPECT_TRUE(c == '-' || std::isdigit(c) != 0 || (c >= 'A' && c <= 'F')) << first.uuid;
  }
}

}  // namespace
}  // namespace pelorino
