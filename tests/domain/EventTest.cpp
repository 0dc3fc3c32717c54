#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "CustomEvents.h"
#include "Event.h"
#include "LogCapture.h"
#include "PaymentEvents.h"
#include "ProgressEvents.h"
#include "PushEvents.h"
#include "SessionEvents.h"
#include "SocialEvents.h"

namespace pelorino {
namespace {

/// An event, and one of its forms.
struct Form {
  template <class Record>
  Form(const Record& record, std::string text)
      : event(std::make_shared<Event<Record>>(record)), want(std::move(text)) {}

  std::shared_ptr<Storable> event;
  std::string want;
};

const std::optional<std::vector<std::string>> prog = {{"a", "b"}};

/// The JSON of what follows "code", with the fields that most events share for "%" and "$".
std::string filled(const std::string& fields) {
  std::string json = R"({"code":)" + fields + "}";
  for (const auto& [mark, shared] :
       {std::pair('%', R"("timestamp":1,"sessionId":2,"level":3)"),
        std::pair('$', R"("inProgress":["a","b"],"inExperiments":"e")")}) {
    if (const auto at = json.find(mark); at != std::string::npos) json.replace(at, 1, shared);
  }
  return json;
}

TEST(Event, IsStoredAsJson) {
  const auto price = [](const char* text) { return *Decimal::parse(text); };
  const Form rows[] = {
      {SessionStart{1, 3, prog, "e"}, R"("ss","timestamp":1,"level":3,$)"},
      {UserEngagement{1, 3, 5, 2, prog, "e"},
       R"("ue","timestamp":1,"level":3,"length":5,"sessionId":2,$)"},
      {Alive{1, "e"}, R"("al","timestamp":1,"inExperiments":"e")"},
      {DeviceInfo{1, "12", "o", 96, "1x2", 6.5, "mf", "md", -60, 1, true, "v", "a", "u", 0},
       R"("di","timestamp":1,"osVersion":"12","os":"o","displayPpi":96,"displayResolution":"1x2",)"
       R"("displayDiagonal":6.5,"manufacturer":"mf","model":"md","timeZoneOffset":-60,"rooted":1,)"
       R"("isLimitAdTrackingEnabled":true,"idfv":"v","idfa":"a","uuid":"u","sandboxState":0)"},
      {LevelUp{2, 1, 3, {{"g", 1}, {"h", -5}}, {{{"s", 1}}}, {{{"e", 2}}}, {{{"b", 3}}}, prog, "e"},
       R"("lu","sessionId":2,"timestamp":1,"level":3,"balance":{"g":1,"h":-5},"spent":{"s":1},)"
       R"("earned":{"e":2},"bought":{"b":3},$)"},
      {CurrentBalance{1, 2, 3, {{"g", 1}}, "e"}, R"("cb",%,"balance":{"g":1},"inExperiments":"e")"},
      {Tutorial{1, 2, 3, -2, prog, "e"}, R"("tr",%,"step":-2,$)"},
      {ProgressionEvent{1, 2, 3, "n", {{"s", 1}}, {{"e", 2}}, {true, 4, 5, "r"}, "e"},
       R"("pe",%,"name":"n","spent":{"s":1},"earned":{"e":2},"parameters":{"success":true,)"
       R"("duration":4,"difficulty":5,"source":"r"},"inExperiments":"e")"},
      {RealCurrencyPayment{1, 2, 3, "p", "o", 0.1, "EUR", prog, "e"},
       R"("rp",%,"productId":"p","orderId":"o","price":0.1,"currencyCode":"EUR",$)"},
      {VirtualCurrencyPayment{1, 2, 3, "i", 4, {{"g", 7}}, "t", prog, "e"},
       R"("vp",%,"purchaseId":"i","purchaseAmount":4,"purchasePrice":{"g":7},"purchaseType":"t",$)"},
      {CurrencyAccrual{
           1, 2, 3, {{{"s", {{"a", 1}, {"b", 2}}}, {"t", {{"c", 3}}}}}, {{{"u", {{"d", 4}}}}}, "e"},
       R"("ca",%,"earned":{"s":{"a":1,"b":2},"t":{"c":3}},"bought":{"u":{"d":4}},)"
       R"("inExperiments":"e")"},
      {CustomEvent{1, 2, 3, "n\"", {{"b", true}, {"d", 0.5}, {"i", 7}}, prog, "e"},
       R"("ce",%,"name":"n\"","parameters":{"b":true,"d":0.5,"i":7},$)"},
      {SocialNetworkConnect{1, 2, 3, "fb", prog, "e"}, R"("sc",%,"socialNetwork":"fb",$)"},
      {SocialNetworkPost{1, 2, 3, "fb", "r", prog, "e"},
       R"("sp",%,"socialNetwork":"fb","postReason":"r",$)"},
      {Referral{1, 2, "s", "c", "t", "m", "w", prog, "e"},
       R"("rf","timestamp":1,"sessionId":2,"source":"s","campaign":"c","content":"t",)"
       R"("medium":"m","term":"w",$)"},
      {AdImpression{1, 2, "sdk", "n", "p", "u", 2.0, prog, "e"},
       R"("adrv","timestamp":1,"sessionId":2,"source":"sdk","ad_network":"n","placement":"p",)"
       R"("ad_unit":"u","revenue":2.0,$)"},
      {TrackingStatus{1, true, prog, "e"}, R"("ts","timestamp":1,"trackingAllowed":true,$)"},
      {PushToken{1, false, "t", "e"},
       R"("pt","timestamp":1,"isAllowed":false,"token":"t","inExperiments":"e")"},
      {PushOpened{1, 7, "b", "e"},
       R"("po","timestamp":1,"pushId":7,"button":"b","inExperiments":"e")"},
      {PeopleEvent{1, 2, 3, {{{"k", "v"}}}, prog, "e"}, R"("pl",%,"parameters":{"k":"v"},$)"},
      {SubscriptionPayment{1, 2, 3, "o", "p", "DE", "EUR", prog, "e"},
       R"("sbs",%,"orderId":"o","productId":"p","regionCode":"DE","currencyCode":"EUR",$)"},
      {RestoredTransactionsEvent{1, "EUR", {{"p", {"x", "y"}}, {"q", {}}}},
       R"("sbsr","timestamp":1,"currencyCode":"EUR","transactions":[{"productID":"p",)"
       R"("transactionIds":["x","y"]},{"productID":"q","transactionIds":[]}])"},
      {SubscriptionProductsEvent{
           1,
           {{"p", price("4.99"), "DE", "EUR", price("1.5"), {{{"d", price("0.10")}}}},
            {"q", {}, "", "", {}, {}}}},
       R"("sbsp","timestamp":1,"products":[{"productId":"p","price":4.99,"regionCode":"DE",)"
       R"("currencyCode":"EUR","introductoryPrice":1.5,"discounts":{"d":0.1}},)"
       R"({"productId":"q","price":0,"regionCode":"","currencyCode":""}])"},
      // What is absent is left out.
      {LevelUp{2, 1, 3}, R"("lu","sessionId":2,"timestamp":1,"level":3)"},
      {ProgressionEvent{1, 2, 3}, R"("pe",%,"name":"","parameters":{"success":false})"},
      {AdImpression{},
       R"("adrv","timestamp":0,"sessionId":0,"source":"sdk","ad_network":"","revenue":0.0)"},
      {PeopleEvent{1, 2, 3}, R"("pl",%,"parameters":null)"},
      {PeopleEvent{1, 2, 3, PeopleProperties()}, R"("pl",%,"parameters":{})"},
  };
  for (const auto& [event, want] : rows) EXPECT_EQ(event->getJson(), filled(want));
}

// The fields that all events share come first and the progression last, whatever their order in
// the JSON; an empty table is no line.
TEST(Event, HasATextWithALineForEachField) {
  const std::string shared = "\t timestamp: 1\n\t sessionId: 2\n\t level: 3\n";
  const Form rows[] = {
      {LevelUp{2, 1, 3, {{"g", 1}, {"h", -5}}, {}, {}, {}, prog, "e"},
       "\t code: lu\n" + shared +
           "\t balance: \n\t\t resource: g amount: 1\n\t\t resource: h amount: -5\n"
           "\t inProgress: a, b\n\t inExperiments: e\n"},
      {CurrencyAccrual{1, 2, 3, {{{"s", {{"a", 1}, {"b", 2}}}, {"t", {{"c", 3}}}}}, {}, {}},
       "\t code: ca\n" + shared +
           "\t earned: \n\t\tsource: s \n\t\tresources:\n\t\t\tresource: a amount: 1\n"
           "\t\t\tresource: b amount: 2\n\t\tsource: t \n\t\tresources:\n"
           "\t\t\tresource: c amount: 3\n"},
      {CustomEvent{1, 2, 3, "n\"", {{"b", true}, {"d", 0.5}}, {}, {}},
       "\t code: ce\n" + shared +
           "\t name: n\"\n\t parameters: \n\t\t parameter key: b value: true\n"
           "\t\t parameter key: d value: 0.5\n"},
      {RestoredTransactionsEvent{1, "EUR", {{"p", {"x", "y"}}, {"q", {}}}},
       "\t code: sbsr\n\t timestamp: 1\n\t currencyCode: EUR\n\t transactions: \n"
       "\t\t product p \n\t\t transactionIds: \n \t\t\t x \n\t\t\t y \n"
       "\t\t product q \n\t\t transactionIds: \n "},
      {SubscriptionProductsEvent{1,
                                 {{"p", {}, "DE", "EUR", {}, {{{"d", *Decimal::parse("0.10")}}}}}},
       "\t code: sbsp\n\t timestamp: 1\n\t products: \n\t\t product 1 \n"
       "\t\t\t productId: p\n\t\t\t price: 0\n\t\t\t regionCode: DE\n"
       "\t\t\t currencyCode: EUR\n\t\t\t discounts: \n\t\t\t\t d: 0.1\n"},
  };
  for (const auto& [event, want] : rows) EXPECT_EQ(event->description(), want);
}

TEST(Event, ThatJsonCannotHoldIsEmptyAndSaysWhy) {
  const LogCapture log;
  const Event event(CustomEvent{.timestamp = 1,
                                .name = "n",
                                .parameters = {{"p", std::numeric_limits<double>::quiet_NaN()}}});
  EXPECT_EQ(event.getJson(), "");
  EXPECT_EQ(log.lines().at(0),
            "ERROR When trying to get json string from \n\t[" + event.description() +
                "] \n\tobject an error has occurred: JSON has no number that is not finite");
}

}  // namespace
}  // namespace pelorino
