#include "BlackBoxTest.h"

namespace pelorino::blackbox {
namespace {

namespace json = boost::json;

constexpr std::int64_t hugeBody = 100 * 1024 * 1024;

class Faults : public BlackBoxTest {};

TEST_F(Faults, DelayAReportAndNeverLoseIt) {
  const struct {
    const char* label;
    json::object fault;
    bool fails;
    bool isRepeated = false;  ///< The backend has taken it, and could not say so.
  } cases[] = {
      // Twice, since a connection that dies before any answer may be tried anew at once.
      {"dropped before reading", {{"drop", "before"}, {"times", 2}}, true},
      {"dropped after reading", {{"drop", "after"}, {"times", 2}}, true},
      {"status 503", {{"status", 503}}, true},
      {"status 201", {{"status", 201}}, true},
      {"redirected",
       {{"status", 307}, {"location", url_ + "/v2/analytics/report?appId=black-box"}},
       true},
      {"garbage with status 200", {{"garbage", true}}, false},
      {"slow", {{"delayMs", 300}}, false},
      {"truncated", {{"truncate", true}}, true, true},
      {"a huge body", {{"hugeBody", hugeBody}}, false},
  };
  const auto host = startedHost();
  const long memory = host->peakMemory();
  std::vector<std::string> names;
  for (const auto& [label, fault, fails, isRepeated] : cases) {
    SCOPED_TRACE(label);
    const std::size_t failures = host->linesWith("submission failed").size();
    backend().fault("/analytics/report", fault);
    host->customEvent(label);
    ASSERT_TRUE(host->deliver());
    names.insert(names.end(), isRepeated ? 2 : 1, label);
    EXPECT_EQ(backend().names(), names);
    EXPECT_EQ(host->linesWith("submission failed").size() > failures, fails);
  }
  EXPECT_LT(host->peakMemory() - memory, hugeBody / 1024 / 2) << "kB";
}

TEST_F(Faults, OfTheConfigurationLeaveTheLibraryWithTheStoredOne) {
  configure({{"eventParamsCount", 17}});
  EXPECT_EQ(configuredHost()->end(), 0);
  const std::string stored = file_.run("SELECT configuration FROM projects");
  for (const json::object& fault :
       {json::object{{"garbage", true}}, json::object{{"truncate", true}},
        json::object{{"hugeBody", hugeBody}}, json::object{{"status", 404}}}) {
    const std::string name = json::serialize(fault);
    SCOPED_TRACE(name);
    backend().fault("/analytics/config", fault);
    const auto host = startedHost();
    EXPECT_TRUE(host->logs("Failed to get analytics configuration, using the default"));
    host->customEvent(name);
    ASSERT_TRUE(host->deliver());
    EXPECT_EQ(backend().names().back(), name);
    EXPECT_EQ(host->end(), 0);
    EXPECT_EQ(file_.run("SELECT configuration FROM projects"), stored);
  }
}

TEST_F(Faults, LetAnEndInTheMidstOfAnExchangeBeQuickAndLoseNothing) {
  const struct {
    const char* line;  ///< What ends the host; empty for the end of its input.
    int code;
  } cases[] = {
      {R"({"op":"exit","code":7})", 7},
      {R"({"op":"kill"})", 128 + SIGKILL},
      {"", 0},
  };
  for (const auto& [line, code] : cases) {
    SCOPED_TRACE(line);
    const std::string name = std::string("unanswered ") + line;
    const auto host = startedHost();
    const std::size_t attempts = host->linesWith("Trying to send the Report").size();
    const auto delay = 2 * std::chrono::milliseconds(Process::deadline);
    backend().fault("/analytics/report", {{"delayMs", delay.count()}});
    host->customEvent(name);
    host->sendBufferedEvents();
    EXPECT_TRUE(host->logs("Trying to send the Report", attempts + 1));
    host->run(line);
    EXPECT_EQ(*line ? host->exitCode() : host->end(), code);

    stopBackend();
    restartBackend();
    EXPECT_EQ(startedHost()->end(), 0) << "the next launch delivers what was left";
    EXPECT_EQ(backend().names().back(), name);
  }
}

}  // namespace
}  // namespace pelorino::blackbox
