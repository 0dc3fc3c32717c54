#include <string>
#include <vector>

#include "ApplicationLifeCycle.h"
#include "DeterministicTest.h"
#include "LifeCycleRepository.h"

namespace pelorino {
namespace {

using Calls = std::vector<std::string>;

class Listener final : public LifeCycleProtocol {
 public:
  void goActive() override { calls.emplace_back("active"); }
  void goInactive() override { calls.emplace_back("inactive"); }
  void goBackground() override { calls.emplace_back("background"); }
  void goTerminate() override { calls.emplace_back("terminate"); }
  Calls calls;
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

TEST_F(ApplicationLifeCycleTest, PassesEachNotificationOnToTheListenerInForce) {
  const auto first = std::make_shared<Listener>();
  const auto second = std::make_shared<Listener>();
  const Calls all = {"active", "inactive", "background", "terminate"};

  postAll();
  repository->setLifeCycleListener(first);
  postAll();
  EXPECT_EQ(first->calls, all);

  repository->setLifeCycleListener(second);
  postAll();
  repository->setLifeCycleListener({});
  postAll();
  EXPECT_EQ(first->calls, all);
  EXPECT_EQ(second->calls, all);
}

TEST_F(ApplicationLifeCycleTest, KeepsNoListenerAliveAndEndsWithItsOwner) {
  auto listener = std::make_shared<Listener>();
  const std::weak_ptr<Listener> weak = listener;
  repository->setLifeCycleListener(listener);
  listener.reset();
  EXPECT_TRUE(weak.expired());
  postAll();

  const auto late = std::make_shared<Listener>();
  repository->setLifeCycleListener(late);
  repository.reset();
  postAll();
  EXPECT_TRUE(late->calls.empty());
}

/// Ends the observer from within a notification, as a teardown does.
class Ending final : public LifeCycleProtocol {
 public:
  explicit Ending(std::unique_ptr<LifeCycleRepository>& repository) : repository_(repository) {}
  void goActive() override { repository_.reset(); }
  void goInactive() override { ADD_FAILURE() << "called after the end"; }
  void goBackground() override {}
  void goTerminate() override {}

 private:
  std::unique_ptr<LifeCycleRepository>& repository_;
};

TEST_F(ApplicationLifeCycleTest, MayEndDuringANotification) {
  const auto ending = std::make_shared<Ending>(repository);
  repository->setLifeCycleListener(ending);
  postAll();
  EXPECT_EQ(repository, nullptr);
}

}  // namespace
}  // namespace pelorino
