#include <set>

#include "BlackBoxTest.h"

namespace pelorino::blackbox {
namespace {

namespace json = boost::json;

class Road : public BlackBoxTest {};

TEST_F(Road, KeepsAnEventOnDiskUntilTheBackendHasTakenIt) {
  const auto host = startedHost();
  stopBackend();

  host->run(R"({"op":"customEvent","eventName":"boss","parameters":)"
            R"({"hp":1,"ratio":0.5,"whole":2.0,"hit":true,"who":"x"}})");
  ASSERT_TRUE(host->drain());
  const std::string stored = query(*host, "SELECT code, eventJson FROM events");
  EXPECT_TRUE(stored.starts_with("ce|{")) << stored;
  EXPECT_NE(stored.find("\"boss\""), std::string::npos) << stored;

  host->sendBufferedEvents();
  ASSERT_TRUE(host->logs("submission failed"));
  EXPECT_EQ(query(*host, "SELECT count(*) FROM events"), "0");
  EXPECT_EQ(query(*host, "SELECT count(*) FROM reports"), "1");

  restartBackend();
  ASSERT_TRUE(deliver(*host));
  const std::vector<Arrived> arrived = backend().events("ce");
  ASSERT_EQ(arrived.size(), 1U);
  EXPECT_EQ(arrived[0].name, "boss");
  const json::value parameters = arrived[0].event.at("parameters");
  EXPECT_EQ(parameters.at("hp"), 1);
  EXPECT_EQ(parameters.at("ratio"), 0.5);
  EXPECT_EQ(parameters.at("whole").to_number<double>(), 2.0);
  EXPECT_EQ(parameters.at("hit"), true);
  EXPECT_EQ(parameters.at("who"), "x");
  EXPECT_EQ(host->end(), 0);
}

TEST_F(Road, LosesAndDoublesNothingWhenTheProcessIsKilled) {
  constexpr int count = 1000;
  std::vector<std::string> names;
  for (int i = 0; i < count; ++i) names.push_back("event " + std::to_string(i));
  {
    const auto host = startedHost();
    stopBackend();
    for (const std::string& name : names) host->customEvent(name);
    ASSERT_TRUE(host->drain());
    host->kill();
  }
  restartBackend();
  const auto host = startedHost();
  EXPECT_EQ(backend().names(), names);
  std::set<std::size_t> sizes;
  for (const Arrived& arrived : backend().events("ce")) sizes.insert(arrived.packageSize);
  EXPECT_EQ(sizes, std::set<std::size_t>{10});
}

TEST_F(Road, SendsTheSameReportAgainUntilItIsTaken) {
  const auto host = startedHost();
  backend().control("fault", {{"endpoint", "/analytics/report"}, {"times", 2}, {"status", 500}});
  const std::size_t attemptsBefore = host->linesWith("Trying to send the Report").size();
  host->customEvent("stubborn");
  ASSERT_TRUE(deliver(*host));

  std::vector<std::string> attempts = host->linesWith("Trying to send the Report");
  attempts.erase(attempts.begin(), attempts.begin() + static_cast<long>(attemptsBefore));
  ASSERT_EQ(attempts.size(), 3U);
  EXPECT_EQ(std::set<std::string>(attempts.begin(), attempts.end()).size(), 1U) << attempts[0];
  EXPECT_EQ(host->linesWith("Failed to send Report, status code: 500").size(), 2U);

  const json::array exchanges = backend().received("/analytics/report");
  ASSERT_GE(exchanges.size(), 3U);
  const std::size_t first = exchanges.size() - 3;
  EXPECT_EQ(exchanges[first].at("body"), exchanges[first + 1].at("body"));
  EXPECT_EQ(exchanges[first].at("body"), exchanges[first + 2].at("body"));
  EXPECT_EQ(backend().names(), std::vector<std::string>{"stubborn"});
}

TEST_F(Road, GoesOnWithTheSessionAtTheNextLaunch) {
  for (const char* name : {"first", "second"}) {
    const auto host = startedHost();
    host->customEvent(name);
    ASSERT_TRUE(deliver(*host));
    EXPECT_EQ(host->end(), 0);
  }
  const std::vector<Arrived> sessions = backend().events("ss");
  ASSERT_EQ(sessions.size(), 1U);
  EXPECT_EQ(backend().events("di").size(), 2U);
  const std::vector<Arrived> events = backend().events("ce");
  ASSERT_EQ(events.size(), 2U);
  for (const Arrived& arrived : events) {
    EXPECT_EQ(arrived.event.at("sessionId"), sessions[0].event.at("timestamp")) << arrived.name;
  }
}

}  // namespace
}  // namespace pelorino::blackbox
