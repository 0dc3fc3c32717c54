#include <algorithm>

#include "BlackBoxTest.h"

namespace pelorino::blackbox {
namespace {

namespace json = boost::json;

class Configuration : public BlackBoxTest {
 protected:
  /// Reports "good" and "bad", and says which of them have arrived.
  std::vector<std::string> arrivingOfGoodAndBad(HostProcess& host) {
    const std::size_t before = backend().names().size();
    host.customEvent("good");
    host.customEvent("bad");
    EXPECT_TRUE(host.drain());
    EXPECT_TRUE(deliver(host));
    std::vector<std::string> names = backend().names();
    return {names.begin() + static_cast<long>(before), names.end()};
  }

  json::value lastRequest() { return backend().received("/analytics/config").back().at("body"); }
};

TEST_F(Configuration, SwitchesOffExactlyTheEventsThatItNames) {
  constexpr const char* line =
      "Event [ce] with [bad] argument is excluded by project configuration";
  const std::vector<std::string> both = {"good", "bad"};
  const std::vector<std::string> good = {"good"};

  configure({{"exclude", {{"version", 3}, {"events", {{"ce", {"bad"}}, {"lu", json::array()}}}}}});
  {
    const auto host = configuredHost();
    EXPECT_EQ(lastRequest().as_object().if_contains("excludeVersion"), nullptr);
    EXPECT_EQ(arrivingOfGoodAndBad(*host), good);
    EXPECT_EQ(host->linesWith(line).size(), 1U);
  }
  {
    // What is stored acts only when the next configuration has come.
    backend().control("fault", {{"endpoint", "/analytics/config"}, {"status", 503}});
    const auto host = startedHost();
    ASSERT_TRUE(host->logs("using the default configuration and retrying after 60 seconds"));
    EXPECT_EQ(lastRequest().at("excludeVersion"), 3);
    EXPECT_EQ(arrivingOfGoodAndBad(*host), both);
  }
  {
    configure({{"exclude", {{"version", 3}}}});  // Unchanged, so that its list is left out.
    const auto host = configuredHost();
    EXPECT_EQ(arrivingOfGoodAndBad(*host), good);
  }
  {
    configure({{"exclude", {{"version", 4}, {"all", true}}}});
    const auto host = configuredHost();
    EXPECT_EQ(arrivingOfGoodAndBad(*host), std::vector<std::string>());
    EXPECT_EQ(host->linesWith("All events is excluded by project configuration").size(), 2U);
  }
}

TEST_F(Configuration, ThatIsNoneChangesNothingAndStopsNothing) {
  const std::string whole =
      R"("timeForRequest":1,"countForRequest":1,"eventParamsCount":1,"sessionTimeout":1,)"
      R"("serverTime":1,"aliveTimeout":1,"userCounting":false)";
  const struct {
    const char* label;
    std::string text;
  } cases[] = {
      {"no JSON", "<html>"},
      {"empty object", "{}"},
      {"another kind", "[1]"},
      {"null", "null"},
      {"truncated", "{" + whole},
      {"followed by more", "{" + whole + "} {"},
      {"nested", std::string(10'000, '[') + std::string(10'000, ']')},
      {"nested in a field",
       "{" + whole + R"(,"exclude":)" + std::string(10'000, '[') + std::string(10'000, ']') + "}"},
      {"a text for a number", R"({"pelorinoId":"7","sbsConfigVersion":"1",)" + whole + "}"},
      {"beyond 64 bits",
       R"({"pelorinoId":18446744073709551616,"sbsConfigVersion":18446744073709551616,)" + whole +
           "}"},
      {"beyond 63 bits",
       R"({"pelorinoId":9223372036854775808,"sbsConfigVersion":9223372036854775808,)" + whole + "}"},
      {"fraction", R"({"pelorinoId":1.5,"sbsConfigVersion":1.5,)" + whole + "}"},
      {"no UTF-8", "{\"x\":\"\xFF\"," + whole + "}"},
  };
  configure({{"eventParamsCount", 17}});
  configuredHost()->end();
  const std::string stored = file_.run("SELECT configuration FROM projects");
  for (const auto& [label, text] : cases) {
    SCOPED_TRACE(label);
    for (const char* endpoint : {"/analytics/config", "/analytics/identification"}) {
      backend().control("answer", {{"endpoint", endpoint}, {"text", text}});
    }
    file_.run("UPDATE deviceIdentifiers SET pelorinoId = NULL");
    HostProcess host(file_, url_);
    host.initialize();
    EXPECT_TRUE(host.logs("[Backend Module] Can't create a config request. Error: "));
    EXPECT_TRUE(host.logs("retrying after 60 seconds"));
    if (text != "{}" && label != std::string_view("truncated")) {}
    host.customEvent(label);
    ASSERT_TRUE(deliver(host));
    EXPECT_EQ(backend().names().back(), label);
    for (const std::string& l : host.linesWith("BackendIdentifiers: ")) std::puts(l.c_str());
    for (const std::string& l : host.linesWith("config request")) std::puts(l.substr(0,200).c_str());
    EXPECT_EQ(host.end(), 0);
    EXPECT_EQ(file_.run("SELECT configuration FROM projects"), stored);
  }
}

}  // namespace
}  // namespace pelorino::blackbox
