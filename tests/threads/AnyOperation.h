#pragma once

#include <gtest/gtest.h>
#include <pelorino/PLRAnalytics.h>
#include <pelorino/PLREngineWrapper.h>
#include <pelorino/PLRHost.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "DatabaseFile.h"

namespace pelorino {

/// Returns when everything handed over before has run, whether the library had then started. A
/// start in the background holds the queue back until the application becomes active.
inline bool drain() {
  std::atomic<bool> hasStarted = false;
  auto done = std::make_shared<std::promise<void>>();
  const auto hasRun = done->get_future();
  PLRAnalytics::getSDKVersion([done, &hasStarted](const std::string& version) {
    hasStarted = !version.empty();
    done->set_value();
  });
  done.reset();
  while (hasRun.wait_for(std::chrono::milliseconds(50)) != std::future_status::ready) {
    PLRHost::didBecomeActive();
  }
  return hasStarted;
}

/// Every operation that a host can call from any thread, with arguments that are good; but for the
/// teardown, and for what would take the test's backend away.
[[nodiscard]] const std::vector<std::function<void()>>& anyOperations();

/// Threads that call whatever there is, much faster than the work can be done: now and then each
/// waits for it.
class Callers {
 public:
  explicit Callers(unsigned count) {
    for (unsigned seed = 0; seed < count; ++seed) {
      threads_.emplace_back([seed](const std::stop_token& isOver) {
        std::mt19937 random(seed);
        while (!isOver.stop_requested()) {
          for (int i = 0; i < 50; ++i) anyOperations()[random() % anyOperations().size()]();
          drain();
        }
      });
    }
  }

 private:
  std::vector<std::jthread> threads_;
};

/// An application whose backend does not answer.
class AnyOperationTest : public ::testing::Test {
 protected:
  AnyOperationTest() {
    PLRHostDescription host;
    host.supportDirectory = file_.support();
    host.keyStoreFile = file_.support() + ".keys";
    PLRHost::describe(host);
    PLRAnalytics::setTestProxyUrl("http://127.0.0.1:9");
  }

  static void end() {
    PLREngineWrapper::destroySDK();
    drain();
    PLREngineWrapper::setEngineLoggerMessageClosure({});
  }

  DatabaseFile file_;
};

}  // namespace pelorino
