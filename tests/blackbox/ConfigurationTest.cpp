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
  const std::string nested = std::string(10'000, '[') + std::string(10'000, ']');
  const auto both = [&](const std::string& value) {
    return R"({"pelorinoId":)" + value + R"(,"sbsConfigVersion":)" + value + "," + whole + "}";
  };
  const struct {
    const char* label;
    std::string text;
    bool isForIdentifiers = false;  ///< None of their keys is required.
  } cases[] = {
      {"no JSON", "<html>"},
      {"an empty object", "{}", true},
      {"another kind", "[1]"},
      {"null", "null"},
      {"truncated", "{" + whole},
      {"followed by more", "{" + whole + "} {"},
      {"nested", nested},
      {"nested in a field", both(nested)},
      {"a text for a number", both(R"("7")")},
      {"a fraction", both("1.5")},
      {"beyond 63 bits", both("9223372036854775808")},
      {"beyond 64 bits", both("18446744073709551616")},
      {"right and then wrong", R"({"pelorinoId":1,"sbsConfigVersion":1,)" + both("{}").substr(1)},
      {"no UTF-8", both("\"\xFF\"")},
  };
  configure({{"eventParamsCount", 17}});
  EXPECT_EQ(configuredHost()->end(), 0);
  const std::string stored = file_.run("SELECT configuration FROM projects");
  for (const auto& [label, text, isForIdentifiers] : cases) {
    SCOPED_TRACE(label);
    for (const char* endpoint : {"/analytics/config", "/analytics/identification"}) {
      backend().control("answer", {{"endpoint", endpoint}, {"text", text}});
    }
    file_.run("UPDATE deviceIdentifiers SET pelorinoId = NULL");
    HostProcess host(file_, url_);
    host.initialize();
    EXPECT_TRUE(host.logs("[Backend Module] Can't create a config request. Error: "));
    EXPECT_TRUE(host.logs("using the default configuration and retrying after 60 seconds"));
    EXPECT_TRUE(host.logs(isForIdentifiers ? "the updated backendIdentifiers are"
                                           : "[Backend Module] parse identifiers. Error:  "));
    host.customEvent(label);
    ASSERT_TRUE(deliver(host));
    EXPECT_EQ(backend().names().back(), label);
    EXPECT_EQ(host.end(), 0);
    EXPECT_EQ(file_.run("SELECT configuration FROM projects"), stored);
    EXPECT_EQ(file_.run("SELECT pelorinoId FROM deviceIdentifiers"), "");
  }
}

}  // namespace
}  // namespace pelorino::blackbox
