#include "BlackBoxTest.h"

namespace pelorino::blackbox {
namespace {

namespace json = boost::json;

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
      {"garbage with status 200", {{"garbage", true}}, false},
      {"truncated", {{"truncate", true}}, true, true},
      {"a huge body", {{"hugeBody", 100 * 1024 * 1024}}, false},
  };
  const auto host = startedHost();
  std::vector<std::string> names;
  for (const auto& [label, fault, fails, isRepeated] : cases) {
    SCOPED_TRACE(label);
    const std::size_t failures = host->linesWith("submission failed").size();
    backend_.fault("/analytics/report", fault);
    host->customEvent(label);
    ASSERT_TRUE(host->deliver());
    names.insert(names.end(), isRepeated ? 2 : 1, label);
    EXPECT_EQ(backend_.names(), names);
    EXPECT_EQ(host->linesWith("submission failed").size() > failures, fails);
  }
}

TEST_F(Faults, LetAnExitInTheMidstOfAnExchangeBeQuickAndLoseNothing) {
  const auto host = startedHost();
  const std::size_t attempts = host->linesWith("Trying to send the Report").size();
  const auto delay = 2 * std::chrono::milliseconds(Process::deadline);
  backend_.fault("/analytics/report", {{"delayMs", delay.count()}});
  host->customEvent("unanswered");
  host->sendBufferedEvents();
  EXPECT_TRUE(host->logs("Trying to send the Report", attempts + 1));
  host->run(R"({"op":"exit","code":7})");
  EXPECT_EQ(host->exitCode(), 7);
  backend_.reset();  // The fault still waits where the exit was quicker than the request.
  EXPECT_EQ(startedHost()->end(), 0) << "the next launch delivers what was left";
  EXPECT_EQ(backend_.names(), std::vector<std::string>{"unanswered"});
}

}  // namespace
}  // namespace pelorino::blackbox
