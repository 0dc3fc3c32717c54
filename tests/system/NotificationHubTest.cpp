#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "NotificationHub.h"

namespace pelorino {
namespace {

using enum ApplicationNotification;

TEST(NotificationHub, BlocksRunInOrderOfRegistrationAndMayChangeWhoObserves) {
  auto hub = std::make_unique<NotificationHub>();
  std::string heard;
  std::unique_ptr<NotificationCenter::Observation> self, next, late;
  const auto first = hub->observe(willResignActive, [&] { heard += 'f'; });
  const auto other = hub->observe(willTerminate, [&] { heard += 'x'; });
  self = hub->observe(willResignActive, [&] {
    heard += 's';
    next.reset();
    late = hub->observe(willResignActive, [&] { heard += 'l'; });
    self.reset();
  });
  next = hub->observe(willResignActive, [&] { heard += 'n'; });
  hub->post(willResignActive);
  EXPECT_EQ(heard, "fs");
  hub->post(willResignActive);
  EXPECT_EQ(heard, "fsfl");
  hub.reset();  // Before the observations.
}

TEST(NotificationHub, ObserversMayComeAndGoOnOtherThreadsMeanwhile) {
  NotificationHub hub;
  std::atomic<int> heard{0};
  std::atomic<bool> isOver{false};
  std::jthread coming([&] {
    while (!isOver) auto passing = hub.observe(willTerminate, [&] { ++heard; });
  });
  const auto staying = hub.observe(willTerminate, [&] { ++heard; });
  for (int i = 0; i < 2000; ++i) hub.post(willTerminate);
  isOver = true;
  coming.join();
  EXPECT_GE(heard, 2000);
}

}  // namespace
}  // namespace pelorino
