#include "Play.h"

#include <pelorino/PLRAnalytics.h>
#include <pelorino/PLRAntiCheat.h>
#include <pelorino/PLREngineWrapper.h>
#include <pelorino/PLREventsRouter.h>
#include <pelorino/PLRUserCard.h>

#include <algorithm>
#include <chrono>
#include <iterator>
#include <memory>

#include "Output.h"
#include "TrackingCommands.h"

namespace pelorino {

/// What commands answer: nobody looks at it.
void host::writeLine(const boost::json::object&) {}

using namespace std::chrono_literals;
using std::chrono::milliseconds;

Play::Play(Device& device, const LifePlan& plan)
    : device_(device), plan_(plan), dice_(plan.seedOf(2'000'000'011)) {}

void Play::run() {
  device_.backend().setHealth(plan_.isFaultless ? 0 : dice_.pick({0, 20, 50, 100}), 10);
  if (!plan_.isFaultless && dice_.chance(10)) {
    device_.setDisk(dice_.pick({FaultyDisk::Fault::full, FaultyDisk::Fault::inputOutput}), 3);
  }
  initialize();
  const std::int64_t steps = 5 + dice_.below(35);
  const std::int64_t doomed = !plan_.isFaultless && dice_.chance(80) ? dice_.below(steps) : steps;
  for (std::int64_t i = 0; i < steps; ++i) {
    if (i == doomed) device_.doom();
    step();
  }
  if (plan_.isFaultless) return settle();
  if (dice_.chance(50)) device_.goToBackground();
}

void Play::initialize() {
  PLRAnalyticsConfiguration decided;
  decided.logLevel = PLRLogLevel::debug;
  if (dice_.chance(20)) decided.userId = someUser();
  if (dice_.chance(10)) decided.currentLevel = 1 + dice_.below(9);
  if (dice_.chance(10)) decided.trackingAvailability = PLRTrackingStatus::enable;
  if (dice_.chance(3)) decided.trackingAvailability = PLRTrackingStatus::disable;
  const bool inBackground = dice_.chance(10);
  device_.start(inBackground);
  const bool isOff = decided.trackingAvailability == PLRTrackingStatus::disable;
  device_.call("initialize", [&] { PLRAnalytics::initialize("key", decided); },
               {isOff ? "disable" : "", decided.userId});
  if (inBackground && dice_.chance(90)) {
    device_.sleep(milliseconds(dice_.below(100'000)));
    device_.becomeActive();
  }
}

void Play::step() {
  const std::int64_t choice = dice_.below(100);
  if (choice < 30) {
    reportSomething();
  } else if (choice < 45) {
    accrue();
  } else if (choice < 53) {
    changeIdentity();
  } else if (choice < 57) {
    changeCard();
  } else if (choice < 67) {
    visitBackground();
  } else if (choice < 75 && !plan_.isFaultless) {
    changeWorld();
  } else if (choice < 78) {
    device_.call("sendBufferedEvents", [] { PLRAnalytics::sendBufferedEvents(); });
  } else if (choice < 79) {
    device_.call("destroySDK", [] { PLREngineWrapper::destroySDK(); });
    device_.sleep(milliseconds(dice_.pick({0, 0, 1000, 70'000})));
    initialize();
  } else if (choice < 81) {
    settle();
  } else if (choice < 86) {
    askBackend();
  } else {
    sleep();
  }
}

void Play::reportSomething() {
  if (dice_.chance(40)) return reportAnything();
  switch (dice_.below(7)) {
    case 0: {
      const std::int64_t level = 1 + dice_.below(9);
      return device_.call("levelUp", [&] { PLRAnalytics::levelUp(level, {{"gold", level}}); });
    }
    case 1: {
      const std::string order = "order" + std::to_string(dice_.below(20));
      const auto pay = [&] { PLRAnalytics::realCurrencyPayment(order, 4.99, "pack", "EUR"); };
      return device_.call("realCurrencyPayment", pay, {order});
    }
    case 2:
      return device_.call("tutorial", [&] { PLRAnalytics::tutorial(dice_.below(10)); });
    case 3:
      device_.call("startProgressionEvent", [] { PLRAnalytics::startProgressionEvent("w1"); });
      if (dice_.chance(50)) sleep();
      return device_.call("finishProgressionEvent",
                          [] { PLRAnalytics::finishProgressionEvent("w1"); });
    default: {
      const std::string serial = std::to_string(plan_.number * 1'000'000 + ++serial_);
      PLRCustomEventParameters parameters;
      parameters.add("serial", serial);
      const auto tell = [&] { PLRAnalytics::customEvent("boss", parameters); };
      return device_.call("customEvent", tell, {serial});
    }
  }
}

void Play::reportAnything() {
  static const host::CommandTable& commands = *new host::CommandTable([] {
    host::CommandTable table = host::trackingCommands();
    for (const auto* op : {"customEvent", "currencyAccrual", "realCurrencyPayment"}) {
      table.erase(op);  // The rules know these by their arguments.
    }
    return table;
  }());
  const auto& [op, command] = *std::next(commands.begin(), dice_.below(std::ssize(commands)));
  const auto& sample =
      command.samples[static_cast<std::size_t>(dice_.below(std::ssize(command.samples)))];
  device_.call(std::string(op),
               [&, name = op, &run = command.run] { run(name, host::Arguments(sample)); });
}

void Play::accrue() {
  const std::string name = dice_.pick({"gold", "gems"});
  const std::string source = dice_.pick({"quest", "shop"});
  const std::int64_t amount = dice_.chance(2) ? 2'147'483'647 : 1 + dice_.below(100);
  const bool isEarned = dice_.chance(50);
  const auto type = isEarned ? PLRAccrualType::earned : PLRAccrualType::bought;
  const auto credit = [&] { PLRAnalytics::currencyAccrual(name, amount, source, type); };
  device_.call("currencyAccrual", credit,
               {name, std::to_string(amount), source, isEarned ? "0" : "1"});
}

void Play::askBackend() {
  switch (dice_.below(5)) {
    case 0:
      return device_.call("eventsRouter.sendPushToken",
                          [] { PLREventsRouter::sendPushToken("token", true); });
    case 1:
      return device_.ask("antiCheat.verifyPayment", [](const auto& number, const auto& answer) {
        PLRAntiCheat::verifyPayment(number, [answer](const PLRVerifyResponse& response) {
          answer({::description(response.receiptStatus()), response.verificationResult()});
        });
      });
    default:
      return device_.ask("eventsRouter.getMessagingCategories",
                         [](const auto&, const auto& answer) {
                           PLREventsRouter::getMessagingCategories(
                               [answer](const auto& all) { answer({std::to_string(all.size())}); });
                         });
  }
}

std::string Play::someUser() {
  return dice_.pick({"", "anna", "bert", "carl", "dora"});
}

void Play::changeIdentity() {
  switch (dice_.below(6)) {
    case 0:
    case 1: {
      const std::string user = someUser();
      const auto change = [&] { PLRAnalytics::setUserId(user); };
      return device_.call("setUserId", change, {user});
    }
    case 2: {
      const std::string from = dice_.pick({"anna", "bert", "carl"});
      const std::string to = dice_.pick({"bert", "carl", "dora"});
      const auto rename = [&] { PLRAnalytics::replace(from, to); };
      return device_.call("replace", rename, {from, to});
    }
    case 3:
      return device_.call("setCurrentLevel",
                          [&] { PLRAnalytics::setCurrentLevel(1 + dice_.below(9)); });
    default: {
      const bool isOn = dice_.chance(75);
      const auto turn = [&] { PLRAnalytics::setTrackingAvailability(isOn); };
      return device_.call("setTrackingAvailability", turn, {isOn ? "enable" : "disable"});
    }
  }
}

void Play::changeCard() {
  switch (dice_.below(5)) {
    case 0:
      return device_.call("userCard.setName", [] { PLRUserCard::setName("Anna"); });
    case 1:
      return device_.call("userCard.set", [&] { PLRUserCard::set("wins", dice_.below(9)); });
    case 2:
      return device_.call("userCard.increment", [] { PLRUserCard::increment("wins", 1); });
    case 3:
      return device_.call("userCard.unset", [] { PLRUserCard::unset("wins"); });
    default:
      return device_.call("userCard.clearUser", [] { PLRUserCard::clearUser(); });
  }
}

void Play::visitBackground() {
  device_.goToBackground();
  if (dice_.chance(50)) {
    const std::int64_t gap = device_.sessionTimeout() + dice_.pick({-1, 0, 0, 1});
    device_.sleep(milliseconds(std::max<std::int64_t>(gap, 0)));
  } else {
    device_.sleep(dice_.pick<milliseconds>({0ms, 0ms, 1s, 1s, 5min, 5min, 11min, 3h}));
  }
  device_.becomeActive();
}

void Play::changeWorld() {
  switch (dice_.below(3)) {
    case 0:
      return device_.backend().setHealth(dice_.pick({0, 0, 20, 50, 100}), dice_.pick({0, 10, 60}));
    case 1: {
      constexpr std::int64_t hour = 3'600'000;
      const std::int64_t span = dice_.pick<std::int64_t>({1, 1000, hour, 24 * hour, 9000 * hour});
      return device_.jumpClock(dice_.chance(50) ? span : -span);
    }
    default:
      if (dice_.chance(60)) return device_.setDisk(FaultyDisk::Fault::none, 0);
      device_.setDisk(dice_.pick({FaultyDisk::Fault::full, FaultyDisk::Fault::inputOutput}),
                      dice_.pick({2, 10, 50, 100}));
  }
}

void Play::sleep() {
  device_.sleep(dice_.pick<milliseconds>({0ms, 0ms, 0ms, 1ms, 500ms, 2s, 15s, 61s, 6min}));
}

bool Play::isStarted() {
  const auto isStarted = std::make_shared<bool>(false);
  PLRAnalytics::getSDKVersion(
      [isStarted](const std::string& version) { *isStarted = !version.empty(); });
  device_.sleep(0ms);
  return *isStarted;
}

void Play::settle() {
  device_.setDisk(FaultyDisk::Fault::none, 0);
  device_.backend().setHealth(0, 0);
  device_.becomeActive();
  device_.sleep(2min);
  if (!isStarted()) {
    device_.call("destroySDK", [] { PLREngineWrapper::destroySDK(); });
    device_.sleep(0ms);
    device_.start(false);
    device_.call("initialize", [] { PLRAnalytics::initialize("key"); }, {"", std::nullopt});
    device_.sleep(2min);
  }
  device_.call("sendBufferedEvents", [] { PLRAnalytics::sendBufferedEvents(); });
  device_.sleep(10s);
  device_.note(Record::Kind::settled, {});
}

void live(const LifePlan& plan, const Journal& journal) {
  // Kept to the end of the process, whose threads know it.
  auto& device = *new Device(plan, journal);
  device.endAfter([&] { Play(device, plan).run(); });
}

}  // namespace pelorino
