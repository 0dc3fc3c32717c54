#include "BlackBoxTest.h"

namespace pelorino::blackbox {
namespace {

namespace json = boost::json;

class Input : public BlackBoxTest {};

std::string manyParameters(int count) {
  std::string line = R"({"op":"customEvent","eventName":"many","parameters":{)";
  for (int i = 0; i < count; ++i) {
    line += (i > 0 ? ",\"p" : "\"p") + std::to_string(i) + "\":" + std::to_string(i);
  }
  return line + "}}";
}

std::string eventLine(const std::string& quotedName, const std::string& parameters = "{}") {
  return R"({"op":"customEvent","eventName":")" + quotedName + R"(","parameters":)" + parameters +
         "}";
}

TEST_F(Input, IsRepairedOrRefusedAndNeverStoredAsBrokenJson) {
  constexpr const char* cancelled = "Execution of the CustomEvent method was canceled!";
  struct Case {
    const char* label;
    std::string line;
    const char* log;   ///< Part of a line that is to be logged.
    std::string want;  ///< The event as it arrives, without its times; empty for none.
  };
  const Case cases[] = {
      {"an empty name", eventLine(""), cancelled, ""},
      {"a name of nothing but a NUL", eventLine("\\u0000"), cancelled, ""},
      {"a NUL within", eventLine("a\\u0000b"), "", R"({"name":"ab"})"},
      {"no UTF-8", eventLine("a\xFF\xC3"), "", "{\"name\":\"a\uFFFD\uFFFD\"}"},
      {"half a surrogate pair, in bytes", eventLine("\xED\xA0\xBD"), "",
       "{\"name\":\"\uFFFD\uFFFD\uFFFD\"}"},
      {"an apostrophe", eventLine("it's"), "", R"({"name":"it's"})"},
      {"10 MB", eventLine(std::string(10'000'000, 'x')), "72",
       R"({"name":")" + std::string(72, 'x') + R"("})"},
      {"an infinite number", eventLine("n", R"({"n":1e999,"m":1})"), "ERROR",
       R"({"name":"n","parameters":{"m":1}})"},
      {"the largest integers; beyond 63 bits they are doubles",
       eventLine("n", R"({"i":-9223372036854775808,"u":18446744073709551615})"), "",
       R"({"name":"n","parameters":{"i":-9223372036854775808,"u":18446744073709551615.0}})"},
  };
  const auto host = startedHost();
  std::vector<json::value> wanted;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    host->run(c.line);
    ASSERT_TRUE(host->drain());
    EXPECT_TRUE(host->logs(c.log));
    if (!c.want.empty()) wanted.push_back(json::parse(c.want));
  }
  ASSERT_TRUE(deliver(*host));
  const std::vector<Arrived> arrived = backend().events("ce");
  ASSERT_EQ(arrived.size(), wanted.size());
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    json::object event = arrived[i].event;
    for (const char* key : {"code", "timestamp", "sessionId", "level"}) event.erase(key);
    EXPECT_EQ(json::value(event), wanted[i]);
  }
  EXPECT_EQ(host->end(), 0);
}

TEST_F(Input, IsLimitedToTheParametersThatTheBackendAllows) {
  const auto host = startedHost();
  host->run(manyParameters(1000));
  ASSERT_TRUE(host->drain());
  EXPECT_TRUE(host->logs("[CustomEventParameters] Limit of [20] is reached", 980));
  ASSERT_TRUE(deliver(*host));
  const std::vector<Arrived> arrived = backend().events("ce");
  ASSERT_EQ(arrived.size(), 1U);
  EXPECT_EQ(arrived[0].event.at("parameters").as_object().size(), 20U);
}

TEST_F(Input, ThatIsNoCommandIsAnErrorWithItsLine) {
  HostProcess host(file_, url_);
  const char* lines[] = {R"({"op":"echo","text":"first"})",
                         "",
                         "{",
                         "[]",
                         R"({"op":"fly"})",
                         R"({"op":"customEvent"})",
                         R"({"op":"customEvent","eventName":1})",
                         R"({"op":"customEvent","eventName":"e","parameters":{"list":[]}})",
                         R"({"op":"sendBufferedEvents","now":true})",
                         R"({"op":"logLevel","level":"loud"})",
                         R"({"op":"echo","text":"last"})"};
  for (const char* line : lines) host.run(line);
  EXPECT_TRUE(host.logs(R"("last")"));
  EXPECT_EQ(host.end(), 2);
  std::vector<std::int64_t> refused;
  for (const std::string& line : host.linesWith("\"error\"")) {
    refused.push_back(json::parse(line).at("line").as_int64());
  }
  EXPECT_EQ(refused, (std::vector<std::int64_t>{3, 4, 5, 6, 7, 8, 9, 10}));
}

}  // namespace
}  // namespace pelorino::blackbox
