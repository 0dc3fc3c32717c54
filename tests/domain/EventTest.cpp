#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "AdImpression.h"
#include "Alive.h"
#include "CurrencyAccrual.h"
#include "CurrentBalance.h"
#include "CustomEvent.h"
#include "DeviceInfo.h"
#include "Event.h"
#include "LevelUp.h"
#include "LogCapture.h"
#include "PeopleEvent.h"
#include "ProgressionEvent.h"
#include "PushOpened.h"
#include "PushToken.h"
#include "RealCurrencyPayment.h"
#include "Referral.h"
#include "RestoredTransactionsEvent.h"
#include "SessionStart.h"
#include "SocialNetworkConnect.h"
#include "SocialNetworkPost.h"
#include "SubscriptionPayment.h"
#include "SubscriptionProductsEvent.h"
#include "TrackingStatus.h"
#include "Tutorial.h"
#include "UserEngagement.h"
#include "VirtualCurrencyPayment.h"

namespace pelorino {
namespace {

template <class Record>
void expectForms(const Record& record, const std::string& json, const std::string& text) {
  const Event event(record);
  EXPECT_EQ(event.getJson(), json);
  EXPECT_EQ(event.description(), text);
}

// Every field set, but for those that exclude each other; the fields that all events share come
// first in the text and the progression last.
TEST(Event, HasAJsonFormAndATextForm) {
  const std::optional<std::vector<std::string>> prog = {{"a", "b"}};
  const std::string common = R"("timestamp":1,"sessionId":2,"level":3,)";
  const std::string tail = R"("inProgress":["a","b"],"inExperiments":"e"})";
  const std::string commonText = "\t timestamp: 1\n\t sessionId: 2\n\t level: 3\n";
  const std::string tailText = "\t inProgress: a, b\n\t inExperiments: e\n";
  const auto price = [](const char* text) { return *Decimal::parse(text); };

  expectForms(SessionStart{1, 3, prog, "e"}, R"({"code":"ss","timestamp":1,"level":3,)" + tail,
              "\t code: ss\n\t timestamp: 1\n\t level: 3\n" + tailText);
  expectForms(UserEngagement{1, 3, 5, 2, prog, "e"},
              R"({"code":"ue","timestamp":1,"level":3,"length":5,"sessionId":2,)" + tail,
              "\t code: ue\n" + commonText + "\t length: 5\n" + tailText);
  expectForms(Alive{1, "e"}, R"({"code":"al","timestamp":1,"inExperiments":"e"})",
              "\t code: al\n\t timestamp: 1\n\t inExperiments: e\n");
  expectForms(
      DeviceInfo{1, "12", "o", 96, "1x2", 6.5, "mf", "md", -60, 1, true, "v", "a", "u", 0},
      R"({"code":"di","timestamp":1,"osVersion":"12","os":"o","displayPpi":96,)"
      R"("displayResolution":"1x2","displayDiagonal":6.5,"manufacturer":"mf","model":"md",)"
      R"("timeZoneOffset":-60,"rooted":1,"isLimitAdTrackingEnabled":true,"idfv":"v","idfa":"a",)"
      R"("uuid":"u","sandboxState":0})",
      "\t code: di\n\t timestamp: 1\n\t osVersion: 12\n\t os: o\n\t displayPpi: 96\n"
      "\t displayResolution: 1x2\n\t displayDiagonal: 6.5\n\t manufacturer: mf\n\t model: md\n"
      "\t timeZoneOffset: -60\n\t rooted: 1\n\t isLimitAdTrackingEnabled: true\n\t idfv: v\n"
      "\t idfa: a\n\t uuid: u\n\t sandboxState: 0\n");
  expectForms(
      LevelUp{
          2, 1, 3, {{"gem", 1}, {"gold", -5}}, {{{"s", 1}}}, {{{"e", 2}}}, {{{"b", 3}}}, prog, "e"},
      R"({"code":"lu","sessionId":2,"timestamp":1,"level":3,"balance":{"gem":1,"gold":-5},)"
      R"("spent":{"s":1},"earned":{"e":2},"bought":{"b":3},)" +
          tail,
      "\t code: lu\n" + commonText +
          "\t balance: \n\t\t resource: gem amount: 1\n\t\t resource: gold amount: -5\n"
          "\t spent: \n\t\t resource: s amount: 1\n\t earned: \n\t\t resource: e amount: 2\n"
          "\t bought: \n\t\t resource: b amount: 3\n" +
          tailText);
  expectForms(CurrentBalance{1, 2, 3, {{"gem", 1}}, "e"},
              R"({"code":"cb",)" + common + R"("balance":{"gem":1},"inExperiments":"e"})",
              "\t code: cb\n" + commonText +
                  "\t balance: \n\t\t resource: gem amount: 1\n\t inExperiments: e\n");
  expectForms(Tutorial{1, 2, 3, -2, prog, "e"},
              R"({"code":"tr",)" + common + R"("step":-2,)" + tail,
              "\t code: tr\n" + commonText + "\t step: -2\n" + tailText);
  expectForms(
      ProgressionEvent{1, 2, 3, "n", {{"s", 1}}, {{"e", 2}}, {true, 4, 5, "src"}, "e"},
      R"({"code":"pe",)" + common +
          R"("name":"n","spent":{"s":1},"earned":{"e":2},"parameters":)"
          R"({"success":true,"duration":4,"difficulty":5,"source":"src"},"inExperiments":"e"})",
      "\t code: pe\n" + commonText +
          "\t name: n\n\t spent: \n\t\t resource: s amount: 1\n\t earned: \n"
          "\t\t resource: e amount: 2\n\t parameters:\n\t\t success: true\n\t\t duration: 4\n"
          "\t\t difficulty: 5\n\t\t source: src\n\t inExperiments: e\n");
  expectForms(RealCurrencyPayment{1, 2, 3, "p", "o", 0.1, "EUR", prog, "e"},
              R"({"code":"rp",)" + common +
                  R"("productId":"p","orderId":"o","price":0.1,"currencyCode":"EUR",)" + tail,
              "\t code: rp\n" + commonText +
                  "\t productId: p\n\t orderId: o\n\t price: 0.1\n\t currencyCode: EUR\n" +
                  tailText);
  expectForms(VirtualCurrencyPayment{1, 2, 3, "i", 4, {{"gold", 7}}, "t", prog, "e"},
              R"({"code":"vp",)" + common +
                  R"("purchaseId":"i","purchaseAmount":4,)"
                  R"("purchasePrice":{"gold":7},"purchaseType":"t",)" +
                  tail,
              "\t code: vp\n" + commonText +
                  "\t purchaseId: i\n\t purchaseAmount: 4\n"
                  "\t purchasePrice: \n\t\t currency: gold price: 7\n\t purchaseType: t\n" +
                  tailText);
  expectForms(
      CurrencyAccrual{
          1, 2, 3, {{{"s", {{"a", 1}, {"b", 2}}}, {"t", {{"c", 3}}}}}, {{{"u", {{"d", 4}}}}}, "e"},
      R"({"code":"ca",)" + common +
          R"("earned":{"s":{"a":1,"b":2},"t":{"c":3}},)"
          R"("bought":{"u":{"d":4}},"inExperiments":"e"})",
      "\t code: ca\n" + commonText +
          "\t earned: \n\t\tsource: s \n\t\tresources:\n\t\t\tresource: a amount: 1\n"
          "\t\t\tresource: b amount: 2\n\t\tsource: t \n\t\tresources:\n"
          "\t\t\tresource: c amount: 3\n\t bought: \n\t\tsource: u \n\t\tresources:\n"
          "\t\t\tresource: d amount: 4\n\t inExperiments: e\n");
  expectForms(
      CustomEvent{1, 2, 3, "n\"", {{"b", true}, {"d", 0.5}, {"i", 7}, {"t", "x"}}, prog, "e"},
      R"({"code":"ce",)" + common +
          R"("name":"n\"","parameters":{"b":true,"d":0.5,"i":7,"t":"x"},)" + tail,
      "\t code: ce\n" + commonText +
          "\t name: n\"\n\t parameters: \n\t\t parameter key: b value: true\n"
          "\t\t parameter key: d value: 0.5\n\t\t parameter key: i value: 7\n"
          "\t\t parameter key: t value: x\n" +
          tailText);
  expectForms(SocialNetworkConnect{1, 2, 3, "fb", prog, "e"},
              R"({"code":"sc",)" + common + R"("socialNetwork":"fb",)" + tail,
              "\t code: sc\n" + commonText + "\t socialNetwork: fb\n" + tailText);
  expectForms(SocialNetworkPost{1, 2, 3, "fb", "r", prog, "e"},
              R"({"code":"sp",)" + common + R"("socialNetwork":"fb","postReason":"r",)" + tail,
              "\t code: sp\n" + commonText + "\t socialNetwork: fb\n\t postReason: r\n" + tailText);
  expectForms(Referral{1, 2, "s", "c", "t", "m", "w", prog, "e"},
              R"({"code":"rf","timestamp":1,"sessionId":2,"source":"s","campaign":"c",)"
              R"("content":"t","medium":"m","term":"w",)" +
                  tail,
              "\t code: rf\n\t timestamp: 1\n\t sessionId: 2\n\t source: s\n\t campaign: c\n"
              "\t content: t\n\t medium: m\n\t term: w\n" +
                  tailText);
  expectForms(AdImpression{1, 2, "sdk", "n", "p", "u", 2.0, prog, "e"},
              R"({"code":"adrv","timestamp":1,"sessionId":2,"source":"sdk","ad_network":"n",)"
              R"("placement":"p","ad_unit":"u","revenue":2.0,)" +
                  tail,
              "\t code: adrv\n\t timestamp: 1\n\t sessionId: 2\n\t source: sdk\n\t network: n\n"
              "\t placement: p\n\t unit: u\n\t revenue: 2.0\n" +
                  tailText);
  expectForms(TrackingStatus{1, true, prog, "e"},
              R"({"code":"ts","timestamp":1,"trackingAllowed":true,)" + tail,
              "\t code: ts\n\t timestamp: 1\n\t trackingAllowed: true\n" + tailText);
  expectForms(PushToken{1, false, "t", "e"},
              R"({"code":"pt","timestamp":1,"isAllowed":false,"token":"t","inExperiments":"e"})",
              "\t code: pt\n\t timestamp: 1\n\t isAllowed: false\n\t token: t\n"
              "\t inExperiments: e\n");
  expectForms(PushOpened{1, 7, "b", "e"},
              R"({"code":"po","timestamp":1,"pushId":7,"button":"b","inExperiments":"e"})",
              "\t code: po\n\t timestamp: 1\n\t pushId: 7\n\t button: b\n\t inExperiments: e\n");
  expectForms(PeopleEvent{1, 2, 3, {{{"k", "v"}}}, prog, "e"},
              R"({"code":"pl",)" + common + R"("parameters":{"k":"v"},)" + tail,
              "\t code: pl\n" + commonText + "\t parameters: \n\t\t parameter key: k value: v\n" +
                  tailText);
  expectForms(SubscriptionPayment{1, 2, 3, "o", "p", "DE", "EUR", prog, "e"},
              R"({"code":"sbs",)" + common +
                  R"("orderId":"o","productId":"p","regionCode":"DE","currencyCode":"EUR",)" + tail,
              "\t code: sbs\n" + commonText +
                  "\t orderId: o\n\t productId: p\n"
                  "\t regionCode: DE\n\t currencyCode: EUR\n" +
                  tailText);
  expectForms(RestoredTransactionsEvent{1, "EUR", {{"p", {"x", "y"}}, {"q", {}}}},
              R"({"code":"sbsr","timestamp":1,"currencyCode":"EUR","transactions":)"
              R"([{"productID":"p","transactionIds":["x","y"]},)"
              R"({"productID":"q","transactionIds":[]}]})",
              "\t code: sbsr\n\t timestamp: 1\n\t currencyCode: EUR\n\t transactions: \n"
              "\t\t product p \n\t\t transactionIds: \n \t\t\t x \n\t\t\t y \n"
              "\t\t product q \n\t\t transactionIds: \n ");
  expectForms(
      SubscriptionProductsEvent{
          1,
          {{"p", price("4.99"), "DE", "EUR", price("1.5"), {{{"d", price("0.10")}}}},
           {"q", {}, "", "", {}, {}}}},
      R"({"code":"sbsp","timestamp":1,"products":[{"productId":"p","price":4.99,)"
      R"("regionCode":"DE","currencyCode":"EUR","introductoryPrice":1.5,)"
      R"("discounts":{"d":0.1}},)"
      R"({"productId":"q","price":0,"regionCode":"","currencyCode":""}]})",
      "\t code: sbsp\n\t timestamp: 1\n\t products: \n\t\t product 1 \n"
      "\t\t\t productId: p\n\t\t\t price: 4.99\n\t\t\t regionCode: DE\n"
      "\t\t\t currencyCode: EUR\n\t\t\t introductoryPrice: 1.5\n\t\t\t discounts: \n"
      "\t\t\t\t d: 0.1\n\t\t product 2 \n\t\t\t productId: q\n\t\t\t price: 0\n"
      "\t\t\t regionCode: \n\t\t\t currencyCode: \n");
}

TEST(Event, LeavesOutWhatIsAbsent) {
  const std::string common = R"("timestamp":0,"sessionId":0,"level":0)";
  const std::string commonText = "\t timestamp: 0\n\t sessionId: 0\n\t level: 0\n";
  expectForms(LevelUp{}, R"({"code":"lu","sessionId":0,"timestamp":0,"level":0})",
              "\t code: lu\n" + commonText);
  expectForms(ProgressionEvent{},
              R"({"code":"pe",)" + common + R"(,"name":"","parameters":{"success":false}})",
              "\t code: pe\n" + commonText + "\t name: \n\t parameters:\n\t\t success: false\n");
  expectForms(CurrencyAccrual{}, R"({"code":"ca",)" + common + "}", "\t code: ca\n" + commonText);
  expectForms(CustomEvent{}, R"({"code":"ce",)" + common + R"(,"name":""})",
              "\t code: ce\n" + commonText + "\t name: \n");
  expectForms(Referral{}, R"({"code":"rf","timestamp":0,"sessionId":0})",
              "\t code: rf\n\t timestamp: 0\n\t sessionId: 0\n");
  expectForms(AdImpression{},
              R"({"code":"adrv","timestamp":0,"sessionId":0,"source":"sdk",)"
              R"("ad_network":"","revenue":0.0})",
              "\t code: adrv\n\t timestamp: 0\n\t sessionId: 0\n\t source: sdk\n\t network: \n"
              "\t revenue: 0.0\n");
  expectForms(PushOpened{}, R"({"code":"po","timestamp":0,"pushId":0})",
              "\t code: po\n\t timestamp: 0\n\t pushId: 0\n");
  expectForms(PeopleEvent{}, R"({"code":"pl",)" + common + R"(,"parameters":null})",
              "\t code: pl\n" + commonText);
  expectForms(PeopleEvent{.parameters = AnyCodable::Object()},
              R"({"code":"pl",)" + common + R"(,"parameters":{}})", "\t code: pl\n" + commonText);
  expectForms(RestoredTransactionsEvent{},
              R"({"code":"sbsr","timestamp":0,"currencyCode":"","transactions":[]})",
              "\t code: sbsr\n\t timestamp: 0\n\t currencyCode: \n");
  expectForms(SubscriptionProductsEvent{}, R"({"code":"sbsp","timestamp":0,"products":[]})",
              "\t code: sbsp\n\t timestamp: 0\n");
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
