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

TEST(Report, SendsItsPackagesAndNothingElse) {
  const std::vector packages{packageOf(Texts{"{\"n\":1}"})};
  const auto report = std::make_shared<Report>(packages, "uuid");
  report->idKey = 5;
  report->userId = 6;
  report->appKey = "key";
  report->identifiers.emplace().deviceId = "device";
  const std::string text = "{\"packages\":[" + std::string(head) + "[{\"n\":1}]}]}";
  EXPECT_EQ(*Reports{{report}}.json(), "{\"reports\":[" + text + "]}");
  const auto empty = std::make_shared<Report>(std::vector<Package>(), "uuid");
  EXPECT_EQ(*(Reports{{report, empty}}.json()), "{\"reports\":[" + text + ",{\"packages\":[]}]}");
  EXPECT_EQ(report->stored(), encodeJson(packages));
}

TEST(Report, SendsWhatCanBeReadOfItsRow) {
  const std::string whole = encodeJson(
      std::vector{packageOf(Texts{"{\"n\":1}", "{\"n\":2}"}), packageOf(Texts{"{\"n\":3.50}"})});
  const auto row = [](const std::string& fields) {
    return R"([{"appVersion":null,"appBuildVersion":null,"bundle":null,)" + fields + "}]";
  };
  const auto sentWith = [](const std::string& events) { return "[" + (head + events) + "}]"; };
  const std::string required = R"("language":"en","sdkVersion":"2.1.2","sdkCodeVersion":10)";
  const struct {
    const char* label;
    std::optional<std::string> stored;
    std::string sent;
  } cases[] = {
      {"as it was written", whole, whole},
      {"blanks and an unknown key", " [" + whole.substr(1, whole.size() - 3) + ", \"x\":1} ]",
       whole},
      {"brackets in a text", row(required + R"(,"events":[{"a":"]}"}, {}])"),
       sentWith(R"([{"a":"]}"},{}])")},
      {"no events", row(required), sentWith("[]")},
      {"events that are no list", row(required + R"(,"events":{})"), sentWith("[]")},
      {"an event that is no object", row(required + R"(,"events":[{},1])"), sentWith("[]")},
      {"no text", std::nullopt, "[]"},
      {"cut off", whole.substr(0, whole.size() - 1), "[]"},
      {"a required key is missing", row(R"("language":"en","sdkVersion":"2")"), "[]"},
      {"a bracket that would break out", "[]}]}", "[]"},
  };
  for (const auto& [label, stored, sent] : cases) {
    SCOPED_TRACE(label);
    Report report;
    report.packagesJson = stored;
    EXPECT_EQ(*report.body(), "{\"reports\":[{\"packages\":" + sent + "}]}");
    EXPECT_EQ(report.body(), report.body()) << "made once";
  }
}

}  // namespace
}  // namespace pelorino
