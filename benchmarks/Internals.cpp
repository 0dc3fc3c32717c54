// What the parts cost that an event passes on its way: its rule and its encoding, the packing of a
// report, and the memory of what waits. The rows of the library are linked here as they are.

#include <malloc.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "AdImpression.h"
#include "BareStore.h"
#include "CurrencyAccrual.h"
#include "CurrentBalance.h"
#include "CustomEvent.h"
#include "Event.h"
#include "EventRepository.h"
#include "LevelUp.h"
#include "ProgressionEvent.h"
#include "RealCurrencyPayment.h"
#include "Referral.h"
#include "Report.h"
#include "SQLiteProvider.h"
#include "SocialNetworkConnect.h"
#include "SocialNetworkPost.h"
#include "Stopwatch.h"
#include "Table.h"
#include "TemporaryFolder.h"
#include "Tutorial.h"
#include "ValidatorRules.h"
#include "VirtualCurrencyPayment.h"

using namespace pelorino;
using namespace pelorino::bench;

namespace {

constexpr std::int64_t now = 1'700'000'000'000;
const Resources threeAmounts{{"gold", 500}, {"gems", 12}, {"energy", 70}};

CustomEvent validEvent() {
  auto call = ValidatorRules::validateCustomEvent({"boss_beaten",
                                                   {{"boss", "hydra"},
                                                    {"heads", 9},
                                                    {"ratio", 0.25},
                                                    {"alone", true},
                                                    {"weapon", "two-handed sword"}}});
  return {.timestamp = now,
          .sessionId = now,
          .level = 3,
          .name = std::move(call->name),
          .parameters = {call->params.begin(), call->params.end()}};
}

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

/// A row for one type of event: from its arguments to its stored text.
template <class Work>
void addEvent(const char* work, Work eventText) {
  measure(work, 9, {{.work = work, .unit = "us", .value = "time"}}, [eventText](Values& values) {
    values["time"] = timeOf(20'000, [&] { return eventText().size(); });
  });
}

template <class Record>
std::string textOf(Record record) {
  return Event(std::move(record)).getJson();
}

void addEvents() {
  addEvent("Checking and encoding: customEvent, 5 parameters", [] { return textOf(validEvent()); });
  addEvent("Checking and encoding: levelUp, 3 balances", [] {
    auto call = ValidatorRules::validateLevelUp({4, threeAmounts});
    return textOf(LevelUp{.sessionId = now,
                          .timestamp = now,
                          .level = call->level,
                          .balance = std::move(call->balances),
                          .spent = threeAmounts,
                          .earned = threeAmounts});
  });
  addEvent("Checking and encoding: currentBalance, 3 resources", [] {
    auto balance = ValidatorRules::validateCurrentBalance(threeAmounts);
    return textOf(CurrentBalance{
        .timestamp = now, .sessionId = now, .level = 3, .balance = std::move(*balance)});
  });
  addEvent("Checking and encoding: tutorial", [] {
    const auto step = ValidatorRules::validateTutorial(7);
    return textOf(Tutorial{.timestamp = now, .sessionId = now, .level = 3, .step = *step});
  });
  addEvent("Checking and encoding: finishProgressionEvent", [] {
    auto call = ValidatorRules::validateFinishProgressionEvent(
        {"world 1", {true, 120, threeAmounts, threeAmounts}});
    return textOf(ProgressionEvent{.timestamp = now,
                                   .sessionId = now,
                                   .level = 3,
                                   .name = std::move(call->eventName),
                                   .spent = std::move(call->parameters.spent),
                                   .earned = std::move(call->parameters.earned)});
  });
  addEvent("Checking and encoding: virtualCurrencyPayment", [] {
    auto call =
        ValidatorRules::validateVirtualCurrencyPayment({"sword", "weapon", 1, threeAmounts});
    return textOf(VirtualCurrencyPayment{.timestamp = now,
                                         .sessionId = now,
                                         .level = 3,
                                         .purchaseId = std::move(call->purchaseId),
                                         .purchaseAmount = call->purchaseAmount,
                                         .purchaseType = std::move(call->purchaseType)});
  });
  addEvent("Checking and encoding: realCurrencyPayment", [] {
    auto call = ValidatorRules::validateRealCurrencyPayment({"order-1", 4.99, "pack", "USD"});
    return textOf(RealCurrencyPayment{.timestamp = now,
                                      .sessionId = now,
                                      .level = 3,
                                      .productId = std::move(call->productId),
                                      .orderId = std::move(call->orderId),
                                      .price = call->price,
                                      .currencyCode = std::move(call->currencyCode)});
  });
  addEvent("Checking and encoding: currencyAccrual, as one event", [] {
    auto call =
        ValidatorRules::validateCurrencyAccrual({"gold", 5, "quest", PLRAccrualType::earned});
    return textOf(CurrencyAccrual{
        .timestamp = now,
        .sessionId = now,
        .level = 3,
        .earned = {{{call->currencyName, {{call->source, call->currencyAmount}}}}}});
  });
  addEvent("Checking and encoding: socialNetworkConnect", [] {
    auto name = ValidatorRules::validateSocialNetworkConnect("network");
    return textOf(SocialNetworkConnect{
        .timestamp = now, .sessionId = now, .level = 3, .socialNetwork = std::move(*name)});
  });
  addEvent("Checking and encoding: socialNetworkPost", [] {
    auto call = ValidatorRules::validateSocialNetworkPost({"network", "victory"});
    return textOf(SocialNetworkPost{.timestamp = now,
                                    .sessionId = now,
                                    .level = 3,
                                    .socialNetwork = std::move(call->name),
                                    .postReason = std::move(call->reason)});
  });
  addEvent("Checking and encoding: referrer, 5 properties", [] {
    auto call = ValidatorRules::validateReferrer(
        {{"source", "s"}, {"campaign", "c"}, {"content", "x"}, {"medium", "m"}, {"term", "t"}});
    return textOf(Referral{.timestamp = now, .sessionId = now, .source = (*call)["source"]});
  });
  addEvent("Checking and encoding: adImpression", [] {
    auto call = ValidatorRules::validateAdImpression({"network", 0.0125, "menu", "banner"});
    return textOf(AdImpression{.timestamp = now,
                               .sessionId = now,
                               .network = std::move(call->network),
                               .placement = std::move(call->placement),
                               .unit = std::move(call->unit),
                               .revenue = call->revenue});
  });
}

/// Both texts of a report, that of its row and that of its request.
void addPacking(std::size_t count, const char* work) {
  measure(work, 9,
          {{.work = work, .unit = "us", .value = "time"},
           {.work = "  for each event", .unit = "us", .value = "each"}},
          [count](Values& values) {
            const std::string event = textOf(validEvent());
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
              Report report(packages);
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

/// The table of events by itself: what its cache costs to fill, and holds.
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
        const auto database = std::make_shared<SQLiteProvider>("key", folder.path());
        const std::string text = textOf(validEvent());
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
