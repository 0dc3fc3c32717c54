#pragma once

#include <gtest/gtest.h>
#include <pelorino/PLRAnalytics.h>
#include <pelorino/PLREngineWrapper.h>
#include <pelorino/PLREventsRouter.h>
#include <pelorino/PLRHost.h>
#include <pelorino/PLRStore.h>
#include <pelorino/PLRUserCard.h>

#include <atomic>
#include <chrono>
#include <future>
#include <map>
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

/// Answers at once.
struct AnyStore final : PLRStore {
  struct Request final : SKProductsRequest {
    void start() override {}
    void cancel() override {}
  };
  std::shared_ptr<SKProductsRequest> makeProductsRequest(const std::set<std::string>&,
                                                         ProductsHandler handler) override {
    handler({.products = {{.productIdentifier = "product"}}, .error = {}});
    return std::make_shared<Request>();
  }
};

/// Every operation that a host can call from any thread, with arguments that are good.
inline const std::vector<void (*)()>& anyCalls() {
  static const std::map<std::string, std::int64_t> gold = {{"gold", 5}};
  static const SKPaymentTransaction bought = {"t", {"product"}, nullptr};
  static const std::vector<void (*)()>& calls = *new std::vector<void (*)()>{
      [] { PLRAnalytics::customEvent("plain"); },
      [] {
        PLRCustomEventParameters parameters;
        for (int i = 0; i < 5; ++i) parameters.add(std::to_string(i), i);
        PLRAnalytics::customEvent("full", parameters);
      },
      [] { PLRAnalytics::sendBufferedEvents(); },
      [] { PLRAnalytics::getDeviceId([](const std::string&) { PLRAnalytics::testLogs(); }); },
      [] { PLRAnalytics::getUserId([](const std::string&) { PLRHost::willResignActive(); }); },
      [] { PLRAnalytics::getCurrentLevel([](std::int64_t) { PLRHost::didBecomeActive(); }); },
      [] { PLRAnalytics::getTrackingAvailability([](bool) {}); },
      [] { PLRAnalytics::isRestoreTransactionHistoryRequired([](bool) {}); },
      [] { PLRAnalytics::setUserId("ann"); },
      [] { PLRAnalytics::setUserId(""); },
      [] { PLRAnalytics::replace("ann", "bob"); },
      [] { PLRAnalytics::setCurrentLevel(3); },
      [] { PLRAnalytics::levelUp(4, gold); },
      [] { PLRAnalytics::currentBalance(gold); },
      [] { PLRAnalytics::virtualCurrencyPayment("sword", "weapon", 1, gold); },
      [] { PLRAnalytics::currencyAccrual("gold", 5, "quest", PLRAccrualType::earned); },
      [] { PLRAnalytics::startProgressionEvent("world"); },
      [] { PLRAnalytics::finishProgressionEvent("world", {}); },
      [] { PLRAnalytics::realCurrencyPayment("order", 4.99, "product", "USD"); },
      [] { PLRAnalytics::subscriptionHistory({bought}); },
      [] { PLRAnalytics::subscriptionPayment(bought, {}); },
      [] { PLRAnalytics::socialNetworkConnect(PLRSocialNetwork::facebook()); },
      [] { PLRAnalytics::socialNetworkPost(PLRSocialNetwork::twitter(), "reason"); },
      [] { PLRAnalytics::tutorial(-1); },
      [] {
        PLRAnalytics::referrer({{PLRReferralProperty::source(), "x"}});
      },
      [] { PLRAnalytics::adImpression("network", 0.1, "placement", "unit"); },
      [] { PLRAnalytics::setTrackingAvailability(false); },
      [] { PLRAnalytics::setTrackingAvailability(true); },
      [] { PLRAnalytics::setIdentifiersListener(std::make_shared<PLRIdentifiersListener>()); },
      [] { PLRAnalytics::setIdentifiersListener(nullptr); },
      [] { PLRAnalytics::setLogLevel(PLRLogLevel::debug); },
      [] { PLRAnalytics::setLoggerMessageClosure(PLRAnalytics::loggerMessageClosure()); },
      [] { PLRAnalytics::setTestCustomUrl(""); },
      [] { PLRAnalytics::getTestProxyUrl(PLRAnalytics::setTestProxyUrl); },
      [] { PLRAnalytics::getTestCustomUrl([](const std::string&) {}); },
      [] { PLRAnalytics::clearKeychain(); },
      [] { static_cast<void>(PLRAnalytics::sdkFolderPath()); },
      [] {
        PLREngineWrapper::setEngineLoggerMessageClosure([](PLRLogLevel, const std::string&) {});
      },
      [] { static_cast<void>(PLREngineWrapper::engineLoggerMessageClosure()); },
      [] { PLREngineWrapper::setSDKVersion("2.1.2"); },
      [] { PLREngineWrapper::enableEditorMode(); },
      [] { PLREngineWrapper::testString("text"); },
      [] { static_cast<void>(PLREngineWrapper::unitySdkFolderPath()); },
      [] {
        PLREngineWrapper::engineSubscriptionHistory({{"product", {"t"}}});
      },
      [] { PLREngineWrapper::engineSubscriprtionPayment("product", "t"); },
      [] { static_cast<void>(PLREventsRouter::isAnalyticsInited()); },
      [] { PLRHost::setStore(std::make_shared<AnyStore>()); },
      [] { PLRHost::setStore(nullptr); },
      [] { PLRHost::setApplicationState(PLRApplicationState::background); },
      [] { PLRHost::didBecomeActive(); },
      [] { PLRHost::didEnterBackground(); },
      [] { PLRHost::willTerminate(); },
      [] { PLRUserCard::setName("ann"); },
      [] { PLRUserCard::setEmail("ann@example.com"); },
      [] { PLRUserCard::setPhone("1"); },
      [] { PLRUserCard::setPhoto("photo"); },
      [] { PLRUserCard::setGender(PLRGender::Female); },
      [] { PLRUserCard::setAge(30); },
      [] { PLRUserCard::setCheater(true); },
      [] { PLRUserCard::set("key", 1.5); },
      [] { PLRUserCard::increment("key", 1); },
      [] { PLRUserCard::getValue("key", [](const std::optional<PLRUserCard::Value>&) {}); },
      [] { PLRUserCard::getAge([](std::int64_t) { PLRUserCard::unset("key"); }); },
      [] { PLRUserCard::clearUser(); },
      [] { PLRAnalytics::initialize("key"); },
  };
  return calls;
}

/// Threads that call whatever there is, much faster than the work can be done: now and then each
/// waits for it.
class Callers {
 public:
  explicit Callers(unsigned count) {
    for (unsigned seed = 0; seed < count; ++seed) {
      threads_.emplace_back([seed](const std::stop_token& isOver) {
        std::mt19937 random(seed);
        while (!isOver.stop_requested()) {
          for (int i = 0; i < 50; ++i) anyCalls()[random() % anyCalls().size()]();
          drain();
        }
      });
    }
  }

 private:
  std::vector<std::jthread> threads_;
};

/// An application whose backend does not answer.
class AnyCallTest : public ::testing::Test {
 protected:
  AnyCallTest() {
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
