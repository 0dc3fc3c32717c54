#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "NotificationHub.h"

namespace pelorino {
namespace {

using enum ApplicationNotification;

TEST(NotificationHub, BlocksRunInOrderOfRegistrationForTheirNotificationOnly) {
  NotificationHub hub;
  std::string heard;
  const auto a = hub.observe(didBecomeActive, [&] { heard += 'a'; });
  const auto other = hub.observe(willTerminate, [&] { heard += 'x'; });
  auto b = hub.observe(didBecomeActive, [&] { heard += 'b'; });
  hub.post(didBecomeActive);
  b.reset();
  hub.post(didBecomeActive);
  EXPECT_EQ(heard, "aba");
}

TEST(NotificationHub, ObserversMayComeAndGoFromWithinABlock) {
  auto hub = std::make_unique<NotificationHub>();
  std::string heard;
  std::unique_ptr<NotificationCenter::Observation> self;
  std::unique_ptr<NotificationCenter::Observation> next;
  std::unique_ptr<NotificationCenter::Observation> late;
  self = hub->observe(willResignActive, [&] {
    heard += 's';
    next.reset();
    late = hub->observe(willResignActive, [&] { heard += 'l'; });
    self.reset();
  });
  next = hub->observe(willResignActive, [&] { heard += 'n'; });
  hub->post(willResignActive);
  EXPECT_EQ(heard, "s");
  hub->post(willResignActive);
  EXPECT_EQ(heard, "sl");
  hub.reset();  // Before the observation.
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
