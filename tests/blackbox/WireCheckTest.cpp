#include "BlackBoxTest.h"

namespace pelorino::blackbox {
namespace {

namespace json = boost::json;

constexpr const char* report = "/analytics/report";
constexpr const char* config = "/analytics/config";
constexpr const char* eventPlace = "body.reports[0].packages[0].events[0]";

/// The body of a report with this event.
std::string with(const std::string& event) {
  return R"({"reports":[{"packages":[{"language":null,"appVersion":null,"appBuildVersion":null,)"
         R"("sdkVersion":"2.1.2","sdkCodeVersion":10,"bundle":null,"engine":"Unreal","events":[)" +
         event + "]}]}]}";
}

/// The same with a custom event that ends so.
std::string withCustom(const std::string& ending) {
  return with(R"({"code":"ce","timestamp":1700000000000,"sessionId":1700000000000,"level":1,)" +
              ending);
}

/// The scenarios rely on the backend's findings, so these must come when something is wrong.
TEST(WireCheck, SaysWhatIsWrongWithARequest) {
  const struct {
    const char* endpoint;
    std::string body;
    std::vector<std::string> want;  ///< Of reports what follows the place of the event.
  } cases[] = {
      {report, with(R"({"code":"zz"})"), {" has the unknown code \"zz\""}},
      {report,
       withCustom(R"("nome":"n"})"),
       {"(ce).name is missing", "(ce).nome is no key of CustomEvent"}},
      {report, withCustom(R"("name":"n","inExperiments":null})"), {"(ce).inExperiments is null"}},
      {report,
       with(R"({"code":"al","timestamp":1700000000})"),
       {"(al).timestamp is not a time in milliseconds"}},
      {report,
       with(R"({"code":"ce","timestamp":1700000000000,"sessionId":1700000000000,"level":1.5,)"
            R"("name":7,"parameters":{"a":[]}})"),
       {"(ce).level is not an integer", "(ce).name is not a text",
        "(ce).parameters.a is not a number, text or boolean"}},
      {config,
       R"({"sdkVersion":"2.1.2","sdkCodeVersion":"10","excludeVersion":null,"appBuildVersion":"1"})",
       {"body.sdkCodeVersion is not an integer", "body.appVersion is missing",
        "body.excludeVersion is null", "body.appBuildVersion is no key of Versions"}},
  };
  const TemporaryFolder folder;
  BackendProcess backend(folder.file("backend.db"));
  for (const auto& [endpoint, body, want] : cases) {
    SCOPED_TRACE(body);
    EXPECT_EQ(backend.post(endpoint, body), 200);
    json::array expected;
    for (const std::string& finding : want) {
      expected.emplace_back((endpoint == report ? eventPlace : "") + finding);
    }
    EXPECT_EQ(backend.received("").back().at("verdict"), expected);
  }
}

}  // namespace
}  // namespace pelorino::blackbox
