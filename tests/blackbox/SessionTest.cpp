#include "BlackBoxTest.h"

namespace pelorino::blackbox {
namespace {

class Session : public BlackBoxTest {};

TEST_F(Session, AsksAndSendsAgainWhenItsTimersSaySo) {
  constexpr const char* identification = "/analytics/identification";
  backend_.answer(identification, {{"retryAfter", 100}}, 202);
  const auto configuration = boost::json::parse(
      R"({"timeForRequest":1000,"countForRequest":10,"eventParamsCount":20,"sessionTimeout":600000,)"
      R"("serverTime":1,"aliveTimeout":300000,"userCounting":true})");
  backend_.answer("/analytics/config", configuration.as_object());
  const auto host = startedHost();
  host->customEvent("sent by a timer");
  EXPECT_TRUE(comesTrue([&] { return backend_.names().size() == 1; }));
  EXPECT_TRUE(comesTrue([&] { return backend_.received(identification).size() >= 3; }));
}

TEST_F(Session, LeavesNobodyBehindInAThousandTripsAndWakesNobodyAfterThem) {
  const auto host = startedHost();
  ASSERT_TRUE(host->logs("The SDK analytics configuration has been received"));
  const std::size_t threads = host->sleeps().size();
  for (int trip = 0; trip < 1000; ++trip) {
    host->run(R"({"op":"host.willResignActive"})");
    host->run(R"({"op":"host.didBecomeActive"})");
  }
  ASSERT_TRUE(host->drain());
  const auto before = host->sleeps();
  // One of the queues may have had nothing to do until now.
  EXPECT_LE(before.size(), threads + 2);

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
