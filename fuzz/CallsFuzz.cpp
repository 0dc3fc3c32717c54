// Public calls in any order with any arguments, on the whole library.

#include <pelorino/PLRUserCard.h>

#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "FuzzedLibrary.h"

namespace pelorino::fuzz {
namespace {

class Script final {
 public:
  Script(const std::uint8_t* data, std::size_t size) : input_(data, size) {
    library_.configuration = input_.ConsumeRandomLengthString();
    library_.identifiers = input_.ConsumeRandomLengthString();
    if (input_.ConsumeBool()) initialize();
  }

  void run();

 private:
  std::string text() { return input_.ConsumeRandomLengthString(300); }
  std::int64_t integer() {
    return input_.ConsumeBool() ? input_.ConsumeIntegralInRange<std::int64_t>(-2, 10)
                                : input_.ConsumeIntegral<std::int64_t>();
  }
  double number() { return input_.ConsumeFloatingPoint<double>(); }
  std::map<std::string, std::int64_t> amounts() {
    std::map<std::string, std::int64_t> entries;
    for (int i = input_.ConsumeIntegralInRange(0, 3); i > 0; --i) {
      std::string name = text();
      entries.insert_or_assign(std::move(name), integer());
    }
    return entries;
  }

  // ---- The time between the calls, and the host's coming and going ----

  void wait() { library_.advance(input_.ConsumeIntegralInRange(0, 60 * 60 * 1000)); }
  void jump() {
    library_.system.setTime(
        input_.ConsumeIntegralInRange<std::int64_t>(1'000'000'000'000, 9'000'000'000'000));
  }
  void runAll() { library_.system.runUntilIdle(); }
  void changeStatus() { library_.status = input_.PickValueInArray({200, 202, 422, 400, 500}); }
  void comeAndGo() {
    constexpr void (*moves[])() noexcept = {PLRHost::didBecomeActive, PLRHost::willResignActive,
                                            PLRHost::didEnterBackground, PLRHost::willTerminate};
    moves[input_.ConsumeIntegralInRange<std::size_t>(0, std::size(moves) - 1)]();
  }
  void tearDown() { PLREngineWrapper::destroySDK(); }

  // ---- Start and identity ----

  void initialize() {
    PLRAnalyticsConfiguration configuration;
    configuration.logLevel = PLRLogLevel::debug;
    if (input_.ConsumeBool()) configuration.userId = text();
    if (input_.ConsumeBool()) configuration.currentLevel = integer();
    PLRAnalytics::initialize(input_.ConsumeBool() ? "key" : text(), configuration);
  }
  void setUserId() { PLRAnalytics::setUserId(text()); }
  void replace() {
    const std::string from = text();
    PLRAnalytics::replace(from, text());
  }
  void setCurrentLevel() { PLRAnalytics::setCurrentLevel(integer()); }
  void track() { PLRAnalytics::setTrackingAvailability(input_.ConsumeBool()); }
  void ask() {
    PLRAnalytics::getUserId([](const std::string&) {});
    PLRAnalytics::getDeviceId([](const std::string& id) { FUZZ_REQUIRE(id.size() <= 64); });
    PLRAnalytics::getCurrentLevel([](std::int64_t level) { FUZZ_REQUIRE(level >= 1); });
  }
  void send() { PLRAnalytics::sendBufferedEvents(); }

  // ---- Events ----

  void levelUp() {
    const std::int64_t level = integer();
    PLRAnalytics::levelUp(level, amounts());
  }
  void currentBalance() { PLRAnalytics::currentBalance(amounts()); }
  void tutorial() { PLRAnalytics::tutorial(integer()); }
  void customEvent() {
    const std::string name = text();
    PLRCustomEventParameters parameters;
    for (int i = input_.ConsumeIntegralInRange(0, 3); i > 0; --i) {
      const std::string key = text();
      if (input_.ConsumeBool()) {
        parameters.add(key, text());
      } else {
        parameters.add(key, number());
      }
    }
    PLRAnalytics::customEvent(name, parameters);
  }
  void startProgression() {
    PLRStartProgressionEventParameters parameters;
    if (input_.ConsumeBool()) parameters.source = text();
    if (input_.ConsumeBool()) parameters.difficulty = integer();
    PLRAnalytics::startProgressionEvent(text(), parameters);
  }
  void finishProgression() {
    PLRFinishProgressionEventParameters parameters;
    parameters.successfulCompletion = input_.ConsumeBool();
    parameters.duration = integer();
    parameters.spent = amounts();
    parameters.earned = amounts();
    PLRAnalytics::finishProgressionEvent(text(), parameters);
  }
  void currencyAccrual() {
    const std::string name = text();
    const std::int64_t amount = integer();
    PLRAnalytics::currencyAccrual(
        name, amount, text(),
        input_.ConsumeBool() ? PLRAccrualType::earned : PLRAccrualType::bought);
  }
  void virtualPayment() {
    const std::string id = text();
    const std::string type = text();
    const std::int64_t amount = integer();
    PLRAnalytics::virtualCurrencyPayment(id, type, amount, amounts());
  }
  void realPayment() {
    const std::string order = text();
    const double price = number();
    PLRAnalytics::realCurrencyPayment(order, price, text(), input_.ConsumeBool() ? "EUR" : text());
  }
  void social() {
    const PLRSocialNetwork network(text());
    PLRAnalytics::socialNetworkConnect(network);
    PLRAnalytics::socialNetworkPost(network, text());
  }
  void referrer() {
    const PLRReferralProperty own(text());
    PLRAnalytics::referrer({{PLRReferralProperty::source(), text()}, {own, text()}});
  }
  void adImpression() {
    const std::string network = text();
    const double revenue = number();
    PLRAnalytics::adImpression(network, revenue, text(), std::nullopt);
  }
  void subscription() {
    const std::string product = text();
    PLREngineWrapper::engineSubscriprtionPayment(product, text());
    PLREngineWrapper::engineSubscriptionHistory({{product, {text(), text()}}});
  }

  // ---- The user's card ----

  void setText() {
    const std::string key = text();
    PLRUserCard::set(key, text());
  }
  void setNumber() {
    const std::string key = text();
    PLRUserCard::set(key, number());
  }
  void setNamed() {
    PLRUserCard::setName(text());
    PLRUserCard::setAge(integer());
    PLRUserCard::setCheater(input_.ConsumeBool());
    PLRUserCard::setGender(PLRGender::Female);
  }
  void incrementInteger() {
    const std::string key = text();
    PLRUserCard::increment(key, integer());
  }
  void incrementNumber() {
    const std::string key = text();
    PLRUserCard::increment(key, number());
  }
  void unset() {
    const std::string key = text();
    PLRUserCard::unset(std::vector{key, text()});
  }
  void getValue() {
    PLRUserCard::getValue(text(), [](const std::optional<PLRUserCard::Value>&) {});
  }
  void clearUser() { PLRUserCard::clearUser(); }

  FuzzedDataProvider input_;
  FuzzedLibrary library_;
};

void Script::run() {
  constexpr void (Script::*calls[])() = {
      &Script::wait,
      &Script::jump,
      &Script::runAll,
      &Script::changeStatus,
      &Script::comeAndGo,
      &Script::tearDown,
      &Script::initialize,
      &Script::setUserId,
      &Script::replace,
      &Script::setCurrentLevel,
      &Script::track,
      &Script::ask,
      &Script::send,
      &Script::levelUp,
      &Script::currentBalance,
      &Script::tutorial,
      &Script::customEvent,
      &Script::startProgression,
      &Script::finishProgression,
      &Script::currencyAccrual,
      &Script::virtualPayment,
      &Script::realPayment,
      &Script::social,
      &Script::referrer,
      &Script::adImpression,
      &Script::subscription,
      &Script::setText,
      &Script::setNumber,
      &Script::setNamed,
      &Script::incrementInteger,
      &Script::incrementNumber,
      &Script::unset,
      &Script::getValue,
      &Script::clearUser,
  };
  while (input_.remaining_bytes() > 0) {
    (this->*calls[input_.ConsumeIntegralInRange<std::size_t>(0, std::size(calls) - 1)])();
  }
  library_.system.runUntilIdle();
}

}  // namespace
}  // namespace pelorino::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  pelorino::fuzz::Script(data, size).run();
  return 0;
}
