#include "BlackBoxTest.h"

namespace pelorino::blackbox {
namespace {

namespace json = boost::json;

/// The scenarios rely on the backend's findings, so these must come when something is wrong.
TEST(WireCheck, SaysWhatIsWrongWithAReport) {
  const std::string common = R"("timestamp":1700000000000,"sessionId":1700000000000,"level":1)";
  const struct {
    const char* label;
    std::string event;
    std::vector<std::string> want;
  } cases[] = {
      {"right", R"({"code":"ce",)" + common + R"(,"name":"n","parameters":{"a":1,"b":"x"}})", {}},
      {"unknown code", R"({"code":"zz"})", {" has the unknown code \"zz\""}},
      {"no code", R"({"name":"n"})", {" is no object with a text \"code\""}},
      {"missing, and too much",
       R"({"code":"ce",)" + common + R"(,"nome":"n"})",
       {"(ce).name is missing", "(ce).nome is no key of CustomEvent"}},
      {"null",
       R"({"code":"ce",)" + common + R"(,"name":"n","inExperiments":null})",
       {"(ce).inExperiments is null"}},
      {"null where it belongs", R"({"code":"pl",)" + common + R"(,"parameters":null})", {}},
      {"seconds",
       R"({"code":"al","timestamp":1700000000})",
       {"(al).timestamp is not a time in milliseconds"}},
      {"wrong kinds",
       R"({"code":"ce","timestamp":1700000000000,"sessionId":1700000000000,"level":1.5,)"
       R"("name":7,"parameters":{"a":[]}})",
       {"(ce).level is not an integer", "(ce).name is not a text",
        "(ce).parameters.a is not a number, text or boolean"}},
      {"no parameters",
       R"({"code":"ce",)" + common + R"(,"name":"n","parameters":{}})",
       {"(ce).parameters is empty"}},
      {"within a list",
       R"({"code":"sbsr","timestamp":1700000000000,"currencyCode":"EUR",)"
       R"("transactions":[{"productId":"p","transactionIds":["t"]}]})",
       {"(sbsr).transactions[0].productID is missing",
        "(sbsr).transactions[0].productId is no key of transaction"}},
  };
  const TemporaryFolder folder;
  BackendProcess backend(folder.file("backend.db"));
  for (const auto& [label, event, want] : cases) {
    SCOPED_TRACE(label);
    EXPECT_EQ(backend.post("/analytics/report",
                           R"({"reports":[{"packages":[{"language":null,"appVersion":null,)"
                           R"("appBuildVersion":null,"sdkVersion":"2.1.2","sdkCodeVersion":10,)"
                           R"("bundle":null,"engine":"Unreal","events":[)" +
                               event + "]}]}]}"),
              200);
    const std::string place = "body.reports[0].packages[0].events[0]";
    json::array expected;
    for (const std::string& finding : want) expected.emplace_back(place + finding);
    EXPECT_EQ(backend.received("").back().at("verdict"), expected);
  }
}

TEST(WireCheck, SaysWhatIsWrongWithAQuestion) {
  const struct {
    const char* endpoint;
    const char* body;
    std::vector<std::string> want;
  } cases[] = {
      {"/analytics/config", R"({"sdkVersion":"2.1.2","sdkCodeVersion":10,"appVersion":null})", {}},
      {"/analytics/config",
       R"({"sdkVersion":"2.1.2","sdkCodeVersion":10,"appVersion":"1","excludeVersion":1,)"
       R"("sbsConfigVersion":0})",
       {}},
      {"/analytics/config",
       R"({"sdkVersion":"2.1.2","sdkCodeVersion":"10","excludeVersion":null,"appBuildVersion":"1"})",
       {"body.sdkCodeVersion is not an integer", "body.appVersion is missing",
        "body.excludeVersion is null", "body.appBuildVersion is no key of Versions"}},
      {"/analytics/identification", R"({"attempt":1})", {}},
      {"/analytics/identification",
       R"({"attempt":"1","userId":"u"})",
       {"body.attempt is not an integer", "body.userId is no key of Attempt"}},
  };
  const TemporaryFolder folder;
  BackendProcess backend(folder.file("backend.db"));
  for (const auto& [endpoint, body, want] : cases) {
    SCOPED_TRACE(body);
    EXPECT_EQ(backend.post(endpoint, body), 200);
    EXPECT_EQ(backend.received("").back().at("verdict"), json::value_from(want));
  }
}

}  // namespace
}  // namespace pelorino::blackbox
