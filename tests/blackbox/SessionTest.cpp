#include <utility>

#include "BlackBoxTest.h"

namespace pelorino::blackbox {
namespace {

namespace json = boost::json;

class Session : public BlackBoxTest {};

TEST_F(Session, IsTimedByThePeriodsOfTheConfigurationAsSoonAsItHasCome) {
  // Each report that arrives puts the request timer off, so that this one must be the faster.
  configure(
      {{"timeForRequest", 1000}, {"currencyAggregationTimeout", 1000}, {"aliveTimeout", 2000}});
  const auto host = startedHost();
  host->customEvent("sent by a timer");
  ASSERT_TRUE(host->logs("Currency accrual timer tick"));
  ASSERT_TRUE(comesTrue([&] { return backend().names().size() == 1; }));

  // Alive is sent once and never kept, even when it does not arrive.
  const std::size_t before = backend().received("/analytics/report").size();
  backend().fault("/analytics/report", {{"status", 500}});
  ASSERT_TRUE(comesTrue([&] { return backend().received("/analytics/report").size() > before; }));
  const json::value body = backend().received("/analytics/report").at(before).at("body");
  EXPECT_EQ(body.at("reports").at(0).at("packages").at(0).at("events").at(0).at("code"), "al");
  EXPECT_EQ(host->waiting(), "");
}

TEST_F(Session, LosesNothingAndLeavesNothingBehindInAThousandTrips) {
  constexpr int trips = 1000;
  configure(
      {{"timeForRequest", 1000}, {"currencyAggregationTimeout", 1000}, {"aliveTimeout", 1000}});
  const auto host = configuredHost();
  const std::size_t threads = host->sleeps().size();
  std::vector<std::string> names;
  for (int i = 0; i < trips; ++i) {
    host->run(R"({"op":"host.willResignActive"})");
    host->run(R"({"op":"host.didBecomeActive"})");
    names.push_back("trip " + std::to_string(i));
    host->customEvent(names.back());
  }
  host->run(R"({"op":"host.willResignActive"})");
  ASSERT_TRUE(host->drain());
  ASSERT_TRUE(host->deliver());
  EXPECT_EQ(backend().names(), names);
  EXPECT_EQ(backend().events("ss").size(), 1U);
  // One of the queues may have had nothing to do until now.
  EXPECT_LE(host->sleeps().size(), threads + 2);

  // A timer left behind would tick within this time.
  const auto ticks = [&] {
    return std::pair(host->linesWith("timer tick").size(), backend().events("al").size());
  };
  const auto before = ticks();
  std::this_thread::sleep_for(std::chrono::milliseconds(1600));
  EXPECT_EQ(ticks(), before);
}

TEST_F(Session, WakesNobodyWhileThereIsNothingToDo) {
  const auto host = configuredHost();
  const auto before = host->sleeps();
  std::this_thread::sleep_for(std::chrono::seconds(2));
  long wakeUps = 0;
  for (const auto& [thread, count] : host->sleeps()) {
    const auto known = before.find(thread);
    wakeUps += count - (known == before.end() ? 0 : known->second);
  }
  // A sanitizer wakes a thread of its own ten times a second.
  EXPECT_LE(wakeUps, 40);
}

}  // namespace
}  // namespace pelorino::blackbox
