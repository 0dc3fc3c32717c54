#include <functional>
#include <string>

#include "ApplicationLifeCycle.h"
#include "DeterministicTest.h"
#include "LifeCycleRepository.h"

namespace pelorino {
namespace {

struct Listener final : LifeCycleProtocol {
  void goActive() override {
    calls += "active ";
    onActive();
  }
  void goInactive() override { calls += "inactive "; }
  void goBackground() override { calls += "background "; }
  void goTerminate() override { calls += "terminate"; }
  std::string calls;
  std::function<void()> onActive = [] {};
};

class ApplicationLifeCycleTest : public DeterministicTest {
 protected:
  void postAll() {
    for (const auto name :
         {ApplicationNotification::didBecomeActive, ApplicationNotification::willResignActive,
          ApplicationNotification::didEnterBackground, ApplicationNotification::willTerminate}) {
      system.notifications().post(name);
    }
  }

  std::unique_ptr<LifeCycleRepository> repository = std::make_unique<LifeCycleRepository>(
      std::make_unique<ApplicationLifeCycle>(system.notifications()));
};

TEST_F(ApplicationLifeCycleTest, PassesEachNotificationOnToTheListenerInForceAndKeepsNoneAlive) {
  const std::string all = "active inactive background terminate";
  const auto first = std::make_shared<Listener>();
  auto second = std::make_shared<Listener>();
  postAll();
  repository->setLifeCycleListener(first);
  postAll();
  EXPECT_EQ(first->calls, all);

  repository->setLifeCycleListener(second);
  postAll();
  EXPECT_EQ(first->calls, all);
  EXPECT_EQ(second->calls, all);
  const std::weak_ptr<Listener> weak = second;
  second.reset();
  EXPECT_TRUE(weak.expired());
  postAll();
}

TEST_F(ApplicationLifeCycleTest, MayEndDuringANotification) {
  const auto ending = std::make_shared<Listener>();
  ending->onActive = [this] { repository.reset(); };
  repository->setLifeCycleListener(ending);
  postAll();
  EXPECT_EQ(ending->calls, "active ");
}

}  // namespace
}  // namespace pelorino
