// The cost of the steps of an event: its rule, its encoding, the packing of a report, and the
// memory of what waits. Links the library's rows directly.

#include <malloc.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "BareStore.h"
#include "CustomEvents.h"
#include "Event.h"
#include "EventCalls.h"
#include "JsonHelpers.h"
#include "PaymentCalls.h"
#include "PaymentEvents.h"
#include "PeopleValidatorRules.h"
#include "ProgressCalls.h"
#include "ProgressEvents.h"
#include "PushEvents.h"
#include "Report.h"
#include "Repositories.h"
#include "SQLiteContracts.h"
#include "SQLiteProvider.h"
#include "SessionEvents.h"
#include "SocialEvents.h"
#include "Stopwatch.h"
#include "Table.h"
#include "TemporaryFolder.h"

using namespace pelorino;
using namespace pelorino::bench;

namespace {

constexpr std::int64_t now = 1'700'000'000'000;
const Resources threeAmounts{{"gold", 500}, {"gems", 12}, {"energy", 70}};

/// Microseconds for one of many runs of `work`, which gives the size of what it has made.
template <class Work>
double timeOf(int count, Work work) {
  std::size_t made = 0;
  const Stopwatch time;
  for (int i = 0; i < count; ++i) made += work();
  const double each = time.microseconds() / count;
  if (made == 0) throw std::runtime_error("nothing was made");
  return each;
}

/// The same for `work` on a copy of `given`, which it may change. Copying is not timed. Only few
/// copies exist at once, so that they are in the processor's cache, as on a queue.
template <class Given, class Work>
double timeOfEach(const Given& given, Work work) {
  constexpr int rounds = 1'000;
  constexpr int copiesPerRound = 20;
  std::size_t made = 0;
  double time = 0;
  std::vector<Given> copies;
  for (int i = 0; i < rounds; ++i) {
    copies.assign(copiesPerRound, given);
    const Stopwatch round;
    for (Given& copy : copies) made += work(std::move(copy));
    time += round.microseconds();
  }
  if (made == 0) throw std::runtime_error("nothing was made");
  return time / (rounds * copiesPerRound);
}

/// The text that is stored of the record, with what the library gives every event.
template <class Record>
std::string textOf(Record record) {
  record.timestamp = now;
  if constexpr (requires { record.sessionId; }) record.sessionId = now;
  if constexpr (requires { record.level; }) record.level = 3;
  return Event(std::move(record)).getJson();
}

const CustomEventCall fiveParameters{"boss_beaten",
                                     {{"boss", "hydra"},
                                      {"heads", 9},
                                      {"ratio", 0.25},
                                      {"alone", true},
                                      {"weapon", "two-handed sword"}}};

std::string customEventText(CustomEventCall given) {
  auto call = ValidatorRules::validateCustomEvent(std::move(given)).value();
  return textOf(CustomEvent{.name = std::move(call.name),
                            .parameters = {std::move_iterator(call.params.begin()),
                                           std::move_iterator(call.params.end())}});
}

Decimal price(const char* text) {
  return Decimal::parse(text).value();
}

using Properties = std::vector<PeopleValidatorRules::Property>;

/// One type of event, and the cost from the arguments to the stored text.
struct EventCase {
  /// `text` takes the arguments of a call and may change them, as the library does.
  template <class Given, class Text>
  EventCase(const char* name, Given given, Text text)
      : work(name), microseconds([=] {
          return timeOfEach(given, [&](Given&& copy) { return text(std::move(copy)).size(); });
        }) {}

  /// An event that the library makes by itself: there is no rule for it.
  template <class Record>
  EventCase(const char* name, Record record) : EventCase(name, std::move(record), textOf<Record>) {}

  const char* work;
  std::function<double()> microseconds;
};

void addEvents() {
  const EventCase cases[] = {
      {"Checking and encoding: customEvent, 5 parameters", fiveParameters, customEventText},
      {"Checking and encoding: levelUp, 3 balances and the sums of 3 each",
       std::pair(LevelUpCall{4, threeAmounts},
                 LevelUp{.spent = threeAmounts, .earned = threeAmounts}),
       [](std::pair<LevelUpCall, LevelUp> given) {
         auto& [call, event] = given;
         event.balance = ValidatorRules::validateLevelUp(std::move(call)).value().balances;
         return textOf(std::move(event));
       }},
      {"Checking and encoding: currentBalance, 3 resources", CurrentBalanceCall{threeAmounts},
       [](CurrentBalanceCall given) {
         return textOf(CurrentBalance{
             .balance = ValidatorRules::validateCurrentBalance(std::move(given)).value().balance});
       }},
      {"Checking and encoding: tutorial", TutorialCall{7},
       [](TutorialCall given) {
         return textOf(Tutorial{.step = ValidatorRules::validateTutorial(given).value().step});
       }},
      {"Checking and encoding: finishProgressionEvent, 3 spent, 3 earned",
       FinishProgressionEventCall{"world 1", {true, 120, threeAmounts, threeAmounts}},
       [](FinishProgressionEventCall given) {
         auto call = ValidatorRules::validateFinishProgressionEvent(std::move(given)).value();
         return textOf(
             ProgressionEvent{.name = std::move(call.eventName),
                              .spent = std::move(call.parameters.spent),
                              .earned = std::move(call.parameters.earned),
                              .parameters = {.success = call.parameters.successfulCompletion,
                                             .duration = call.parameters.duration}});
       }},
      {"Checking and encoding: virtualCurrencyPayment, 3 currencies",
       VirtualCurrencyPaymentCall{"sword", "weapon", 1, threeAmounts},
       [](VirtualCurrencyPaymentCall given) {
         auto call = ValidatorRules::validateVirtualCurrencyPayment(std::move(given)).value();
         return textOf(VirtualCurrencyPayment{.purchaseId = std::move(call.purchaseId),
                                              .purchaseAmount = call.purchaseAmount,
                                              .purchasePrice = std::move(call.resources),
                                              .purchaseType = std::move(call.purchaseType)});
       }},
      {"Checking and encoding: realCurrencyPayment",
       RealCurrencyPaymentCall{"order-1", 4.99, "pack", "USD"},
       [](RealCurrencyPaymentCall given) {
         auto call = ValidatorRules::validateRealCurrencyPayment(std::move(given)).value();
         return textOf(RealCurrencyPayment{.productId = std::move(call.productId),
                                           .orderId = std::move(call.orderId),
                                           .price = call.price,
                                           .currencyCode = std::move(call.currencyCode)});
       }},
      {"Checking and encoding: subscriptionPayment",
       EngineSubscriptionPaymentCall{"com.example.monthly", "order-1"},
       [](EngineSubscriptionPaymentCall given) {
         auto call = ValidatorRules::validateSubscriptionPayment(std::move(given)).value();
         return textOf(SubscriptionPayment{.orderId = std::move(call.transactionId),
                                           .productId = std::move(call.productId),
                                           .regionCode = "US",
                                           .currencyCode = "USD"});
       }},
      {"Checking and encoding: currencyAccrual, as one event",
       CurrencyAccrualCall{"gold", 5, "quest", PLRAccrualType::earned},
       [](CurrencyAccrualCall given) {
         auto call = ValidatorRules::validateCurrencyAccrual(std::move(given)).value();
         return textOf(CurrencyAccrual{
             .earned = {{{call.source, {{call.currencyName, call.currencyAmount}}}}}});
       }},
      {"Checking and encoding: socialNetworkConnect", SocialNetworkConnectCall{"network"},
       [](SocialNetworkConnectCall given) {
         return textOf(SocialNetworkConnect{
             .socialNetwork =
                 ValidatorRules::validateSocialNetworkConnect(std::move(given)).value().name});
       }},
      {"Checking and encoding: socialNetworkPost", SocialNetworkPostCall{"network", "victory"},
       [](SocialNetworkPostCall given) {
         auto call = ValidatorRules::validateSocialNetworkPost(std::move(given)).value();
         return textOf(SocialNetworkPost{.socialNetwork = std::move(call.name),
                                         .postReason = std::move(call.reason)});
       }},
      {"Checking and encoding: referrer, 5 properties",
       ReferrerCall{
           {{"source", "s"}, {"campaign", "c"}, {"content", "x"}, {"medium", "m"}, {"term", "t"}}},
       [](const ReferrerCall& given) {
         const auto call = ValidatorRules::validateReferrer(given).value().utmData;
         return textOf(Referral{.source = call.at("source"),
                                .campaign = call.at("campaign"),
                                .content = call.at("content"),
                                .medium = call.at("medium"),
                                .term = call.at("term")});
       }},
      {"Checking and encoding: adImpression", AdImpressionCall{"network", 0.0125, "menu", "banner"},
       [](AdImpressionCall given) {
         auto call = ValidatorRules::validateAdImpression(std::move(given)).value();
         return textOf(AdImpression{.network = std::move(call.network),
                                    .placement = std::move(call.placement),
                                    .unit = std::move(call.unit),
                                    .revenue = call.revenue});
       }},
      {"Checking and encoding: the user's card, 5 properties",
       Properties{
           {"name", "Ada"}, {"age", 36}, {"cheater", false}, {"guild", "owls"}, {"rank", 0.5}},
       [](Properties given) {
         PeopleProperties card;
         for (auto& [key, value] : given) {
           card.insert(
               PeopleValidatorRules::validateSet("set", std::move(key), std::move(value)).value());
         }
         return textOf(PeopleEvent{.parameters = std::move(card)});
       }},
      {"Encoding, without a rule: start of a session", SessionStart{}},
      {"Encoding, without a rule: end of a stretch in the foreground",
       UserEngagement{.length = 90}},
      {"Encoding, without a rule: sign of life", Alive{}},
      {"Encoding, without a rule: device",
       DeviceInfo{.osVersion = "6.18",
                  .os = "Linux",
                  .displayPpi = 96,
                  .displayResolution = "1920x1080",
                  .displayDiagonal = 23.8,
                  .manufacturer = "maker",
                  .model = "model",
                  .timeZoneOffset = 3600,
                  .idfv = "11111111-2222-3333-4444-555555555555",
                  .idfa = "66666666-7777-8888-9999-000000000000",
                  .uuid = "aaaaaaaa-bbbb-cccc-dddd-eeeeeeeeeeee",
                  .sandboxState = 0}},
      {"Encoding, without a rule: tracking switched off", TrackingStatus{}},
      {"Encoding, without a rule: push token of 64 characters",
       PushToken{.isAllowed = true, .token = std::string(64, 'f')}},
      {"Encoding, without a rule: push opened", PushOpened{.pushId = 17, .button = "play"}},
      {"Encoding, without a rule: 3 subscription products",
       SubscriptionProductsEvent{
           .products = std::vector(3, SubscriptionProduct{"com.example.monthly",
                                                          price("4.99"),
                                                          "US",
                                                          "USD",
                                                          price("0.99"),
                                                          {{{"welcome", price("1.99")}}}})}},
      {"Encoding, without a rule: 3 restored transactions",
       RestoredTransactionsEvent{
           .currencyCode = "USD",
           .transactions = {{"com.example.monthly", {"order-1", "order-2", "order-3"}}}}},
  };
  for (const EventCase& one : cases) {
    measure(one.work, 9, {{.work = one.work, .unit = "us", .value = "time"}},
            [microseconds = one.microseconds](Values& values) { values["time"] = microseconds(); });
  }
}

/// Both texts of a report, that of its row and that of its request.
void addPacking(std::size_t count, const char* work) {
  measure(work, 9,
          {{.work = work, .unit = "us", .value = "time"},
           {.work = "  for each event", .unit = "us", .value = "each"}},
          [count](Values& values) {
            const std::string event = customEventText(fiveParameters);
            const std::vector<std::string> waiting(count, event);
            const auto packed = [&] {
              std::vector<Package> packages;
              for (std::size_t i = 0; i < count; i += 10) {
                Package& package = packages.emplace_back();
                package.sdkVersion = "1.0";
                package.events.emplace(
                    waiting.begin() + static_cast<std::ptrdiff_t>(i),
                    waiting.begin() + static_cast<std::ptrdiff_t>(std::min(i + 10, count)));
              }
              Report report(packages, "uuid");
              return report.stored()->size() + report.body()->size();
            };
            values["time"] = timeOf(static_cast<int>(100'000 / count), packed);
            values["each"] = values["time"] / static_cast<double>(count);
          });
}

std::size_t memoryInUse() {
  const struct mallinfo2 info = ::mallinfo2();
  return info.uordblks + info.hblkhd;
}

/// The table of events alone: time to fill its cache, and memory of the cache.
void addWaitingEvents() {
  constexpr int count = 100'000;
  measure(
      "waiting", 9,
      {{.work = "Reading 100,000 stored events into the cache",
        .unit = "ms",
        .value = "load",
        .reference = "select",
        .goal = Goal::ratioAtMost(1.5)},
       {.work = "Memory per waiting event, beyond its text", .unit = "bytes", .value = "memory"}},
      [](Values& values) {
        const TemporaryFolder folder;
        SQLiteProvider database("key", folder.path(), SQLiteContracts::schema());
        const std::string text = customEventText(fiveParameters);
        BareStore store(folder.path() + "/pelorino/pelorino.db");
        store.run(
            "WITH RECURSIVE numbers(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM numbers "
            "WHERE n < " +
            std::to_string(count) +
            ") INSERT INTO events (code, userId, eventJson) SELECT 'ce', 1, '" + text +
            "' FROM numbers");
        EventRepository events(database);
        values.inTurn(
            [&] {
              const std::size_t before = memoryInUse();
              const Stopwatch time;
              const bool hasAll = events.countOfUser(1) == count;
              values["load"] = time.microseconds() / 1000;
              if (!hasAll) throw std::runtime_error("not all events were read");
              values["memory"] = static_cast<double>(memoryInUse() - before) / count -
                                 static_cast<double>(text.size());
            },
            [&] {
              const Stopwatch time;
              if (store.readAll("SELECT * FROM events") == 0) {
                throw std::runtime_error("there was nothing to read");
              }
              values["select"] = time.microseconds() / 1000;
            });
      });
}

}  // namespace

int main(int argc, char** argv) {
  addEvents();
  addPacking(10, "Packing a report of 10 events, for its row and its request");
  addPacking(1'000, "Packing a report of 1,000 events");
  addPacking(50'000, "Packing a report of 50,000 events");
  addWaitingEvents();
  return run(argc, argv);
}
