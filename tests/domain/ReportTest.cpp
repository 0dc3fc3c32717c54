#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "JsonHelpers.h"
#include "Report.h"

namespace pelorino {
namespace {

using Texts = std::vector<std::string>;

Package packageOf(std::optional<Texts> events) {
  return {.language = "en",
          .sdkVersion = "2.1.2",
          .sdkCodeVersion = 10,
          .bundle = {},
          .events = std::move(events)};
}

constexpr const char* head =
    "{\"language\":\"en\",\"appVersion\":null,\"appBuildVersion\":null,\"sdkVersion\":\"2.1.2\","
    "\"sdkCodeVersion\":10,\"bundle\":null,\"engine\":\"Unreal\",\"events\":";

TEST(Package, EmbedsEventsAsObjects) {
  const auto expectEvents = [](std::optional<Texts> events, const std::string& json) {
    EXPECT_EQ(encodeJson(packageOf(std::move(events))), head + json + "}");
  };
  expectEvents(std::nullopt, "[]");
  expectEvents(Texts{"{\"b\":1}", "{\"a\":[]}"}, "[{\"b\":1},{\"a\":[]}]");
  expectEvents(Texts{"", "[1]", "1", "{\"a\":", "{}x", "{\"a\":\"\xff\"}", "{\"z\":0}"},
               "[{},{},{},{},{},{},{\"z\":0}]");
}

TEST(Package, ReadsBackWhatItCan) {
  /// Absent when the package does not read.
  const auto events = [](const std::string& fields) -> std::optional<Texts> {
    const auto packages = from<std::vector<Package>>(
        R"([{"appVersion":"1","appBuildVersion":null,"bundle":null,)" + fields + "}]");
    return packages ? packages->front().events : std::nullopt;
  };
  const std::string common = R"("language":null,"sdkVersion":"2","sdkCodeVersion":10)";
  EXPECT_EQ(events(common + R"(,"events":[{"a":"]}"}, {}])"), (Texts{"{\"a\":\"]}\"}", "{}"}));
  EXPECT_EQ(events(common), Texts{});
  EXPECT_EQ(events(common + R"(,"events":{})"), Texts{});
  EXPECT_EQ(events(common + R"(,"events":[{},1])"), Texts{});
  EXPECT_EQ(events(R"("language":null,"sdkVersion":"2","events":[])"), std::nullopt);
  EXPECT_EQ(events(R"("language":null,"sdkVersion":2,"sdkCodeVersion":10)"), std::nullopt);
  EXPECT_EQ(events(R"("sdkVersion":"2","sdkCodeVersion":10)"), std::nullopt);
}

TEST(Report, KeepsEventsAndPackageBoundariesInTheStore) {
  const std::string stored = encodeJson(std::vector<Package>{
      packageOf(Texts{"{\"n\":1}", "{\"n\":2}"}), packageOf(Texts{"{\"n\":3.50}"})});
  const auto loaded = decodeJson<std::vector<Package>>(stored);
  ASSERT_EQ(loaded.size(), 2U);
  EXPECT_EQ(loaded[0].events, (Texts{"{\"n\":1}", "{\"n\":2}"}));
  EXPECT_EQ(loaded[1].events, Texts{"{\"n\":3.50}"});
  EXPECT_EQ(encodeJson(loaded), stored);
}

TEST(Report, SendsItsPackagesAndNothingElse) {
  const std::vector packages{packageOf(Texts{"{\"n\":1}"})};
  const auto report = std::make_shared<Report>(packages);
  report->idKey = 5;
  report->userId = 6;
  report->appKey = "key";
  report->identifiers.emplace().deviceId = "device";
  const std::string text = "{\"packages\":[" + std::string(head) + "[{\"n\":1}]}]}";
  EXPECT_EQ(*Reports{{report}}.json(), "{\"reports\":[" + text + "]}");
  const auto empty = std::make_shared<Report>(std::vector<Package>());
  EXPECT_EQ(*(Reports{{report, empty}}.json()), "{\"reports\":[" + text + ",{\"packages\":[]}]}");
  EXPECT_EQ(report->stored(), encodeJson(packages));
}

TEST(Report, SendsWhatCanBeReadOfItsRow) {
  struct Case {
    const char* label;
    std::optional<std::string> row;
    std::string sent;
  };
  const std::string whole = encodeJson(std::vector{packageOf(Texts{"{\"n\":3.50}"})});
  const Case cases[] = {
      {"as it was written", whole, whole},
      {"blanks and an unknown key", " [" + whole.substr(1, whole.size() - 3) + ", \"x\":1} ]",
       whole},
      {"no text", std::nullopt, "[]"},
      {"cut off", whole.substr(0, whole.size() - 1), "[]"},
      {"a required key is missing", "[{}]", "[]"},
      {"a bracket that would break out", "[]}]}", "[]"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    Report report;
    report.packagesJson = c.row;
    EXPECT_EQ(*report.body(), "{\"reports\":[{\"packages\":" + c.sent + "}]}");
    EXPECT_EQ(report.body(), report.body()) << "made once";
  }
}

TEST(Report, MadeInMemoryHasAUuidOfItsOwn) {
  const Report first{std::vector<Package>()};
  EXPECT_NE(first.uuid, Report(std::vector<Package>()).uuid);
  EXPECT_EQ(first.uuid.size(), 36U);
  EXPECT_EQ(first.uuid.find_first_not_of("-0123456789ABCDEF"), std::string::npos) << first.uuid;
}

}  // namespace
}  // namespace pelorino
