#include <algorithm>

#include "BlackBoxTest.h"

namespace pelorino::blackbox {
namespace {

namespace json = boost::json;

constexpr std::int64_t hugeBody = 100 * 1024 * 1024;

class Faults : public BlackBoxTest {};

TEST_F(Faults, OfTheConnectionDelayAReportAndNeverLoseIt) {
  struct Case {
    const char* label;
    json::object fault;
    bool fails;
  };
  const Case cases[] = {
      // Twice, since a connection that dies before any answer may be tried anew at once.
      {"dropped before reading", {{"drop", "before"}, {"times", 2}}, true},
      {"dropped after reading", {{"drop", "after"}, {"times", 2}}, true},
      {"status 503", {{"status", 503}}, true},
      {"status 201", {{"status", 201}}, true},
      {"garbage with status 200", {{"garbage", true}}, false},
      {"slow", {{"delayMs", 300}}, false},
  };
  const auto host = startedHost();
  std::vector<std::string> names;
  for (Case c : cases) {
    SCOPED_TRACE(c.label);
    const std::size_t failures = host->linesWith("submission failed").size();
    c.fault["endpoint"] = "/analytics/report";
    backend().control("fault", c.fault);
    host->customEvent(c.label);
    ASSERT_TRUE(deliver(*host));
    names.emplace_back(c.label);
    EXPECT_EQ(backend().names(), names);
    EXPECT_EQ(host->linesWith("submission failed").size() > failures, c.fails);
  }
}

TEST_F(Faults, OfAnAnswerBodyCostNoMemory) {
  const auto host = startedHost();
  const long before = host->peakMemory();
  for (const json::object& fault :
       {json::object{{"hugeBody", hugeBody}}, json::object{{"truncate", true}}}) {
    json::object order = fault;
    order["endpoint"] = "/analytics/report";
    backend().control("fault", order);
    const std::string name = json::serialize(fault);
    host->customEvent(name);
    ASSERT_TRUE(deliver(*host));
    const std::vector<std::string> names = backend().names();
    EXPECT_NE(std::find(names.begin(), names.end(), name), names.end()) << name;
  }
  EXPECT_LT(host->peakMemory() - before, hugeBody / 1024 / 4) << "kB";
}

TEST_F(Faults, OfTheConfigurationLeaveTheLibraryOnItsOwn) {
  std::size_t requests = 0;
  for (const json::object& fault :
       {json::object{{"garbage", true}}, json::object{{"truncate", true}},
        json::object{{"hugeBody", hugeBody}}, json::object{{"status", 404}}}) {
    const std::string name = json::serialize(fault);
    SCOPED_TRACE(name);
    json::object order = fault;
    order["endpoint"] = "/analytics/config";
    backend().control("fault", order);
    const auto host = startedHost();
    EXPECT_TRUE(host->logs("Failed to get analytics configuration, using the default"));
    EXPECT_EQ(backend().received("/analytics/config").size(), ++requests);
    host->customEvent(name);
    ASSERT_TRUE(deliver(*host));
    EXPECT_EQ(backend().names().back(), name);
    EXPECT_EQ(host->end(), 0);
  }
}

/// A host in the midst of an exchange that the backend does not answer.
class Exit : public BlackBoxTest {
 protected:
  std::unique_ptr<HostProcess> hostThatWaits() {
    auto host = startedHost();
    const std::size_t attempts = host->linesWith("Trying to send the Report").size();
    const auto delay = 2 * std::chrono::milliseconds(Process::deadline);
    backend().control("fault", {{"endpoint", "/analytics/report"}, {"delayMs", delay.count()}});
    host->customEvent("unanswered");
    host->sendBufferedEvents();
    EXPECT_TRUE(host->logs("Trying to send the Report", attempts + 1));
    return host;
  }

  /// The next launch of the application delivers what was left.
  void expectDeliveredNextTime() {
    stopBackend();
    restartBackend();
    const auto host = startedHost();
    EXPECT_EQ(backend().names().back(), "unanswered");
  }
};

TEST_F(Exit, InTheMidstOfAnExchangeIsQuickAndLosesNothing) {
  const auto host = hostThatWaits();
  host->run(R"({"op":"exit","code":7})");
  EXPECT_EQ(host->exitCode(), 7);
  expectDeliveredNextTime();
}

TEST_F(Exit, ByAKillLosesNothing) {
  const auto host = hostThatWaits();
  host->run(R"({"op":"kill"})");
  EXPECT_EQ(host->exitCode(), 128 + SIGKILL);
  expectDeliveredNextTime();
}

TEST_F(Exit, AtTheEndOfTheInputDoesNotWaitForTheNetwork) {
  const auto host = hostThatWaits();
  EXPECT_EQ(host->end(), 0);
  expectDeliveredNextTime();
}

}  // namespace
}  // namespace pelorino::blackbox
