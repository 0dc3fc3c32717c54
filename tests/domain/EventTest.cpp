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

/// `text` with the fields that most events share for a "%" at its beginning and a "$" at its end.
std::string filled(std::string text, const std::string& opening, const std::string& ending) {
  if (text.ends_with('$')) text.replace(text.size() - 1, 1, ending);
  if (text.starts_with('%')) text.replace(0, 1, opening);
  return text;
}

/// `json` and `text` are what follows the code.
template <class Record>
void expectForms(const std::string& code, const Record& record, const std::string& json,
                 const std::string& text) {
  const Event event(record);
  EXPECT_EQ(event.getJson(), R"({"code":")" + code + R"(",)" +
                                 filled(json, R"("timestamp":1,"sessionId":2,"level":3)",
                                        R"(,"inProgress":["a","b"],"inExperiments":"e")") +
                                 "}");
  EXPECT_EQ(event.description(), "\t code: " + code + "\n" +
                                     filled(text, "\t timestamp: 1\n\t sessionId: 2\n\t level: 3\n",
                                            "\t inProgress: a, b\n\t inExperiments: e\n"));
}

// The fields that all events share come first in the text and the progression last.
TEST(Event, HasAJsonFormAndATextForm) {
  const std::optional<std::vector<std::string>> prog = {{"a", "b"}};
  const auto price = [](const char* text) { return *Decimal::parse(text); };

  expectForms("ss", SessionStart{1, 3, prog, "e"}, R"("timestamp":1,"level":3$)",
              "\t timestamp: 1\n\t level: 3\n$");
  expectForms("ue", UserEngagement{1, 3, 5, 2, prog, "e"},
              R"("timestamp":1,"level":3,"length":5,"sessionId":2$)", "%\t length: 5\n$");
  expectForms("al", Alive{1, "e"}, R"("timestamp":1,"inExperiments":"e")",
              "\t timestamp: 1\n\t inExperiments: e\n");
  expectForms(
      "di", DeviceInfo{1, "12", "o", 96, "1x2", 6.5, "mf", "md", -60, 1, true, "v", "a", "u", 0},
      R"("timestamp":1,"osVersion":"12","os":"o","displayPpi":96,"displayResolution":"1x2",)"
      R"("displayDiagonal":6.5,"manufacturer":"mf","model":"md","timeZoneOffset":-60,"rooted":1,)"
      R"("isLimitAdTrackingEnabled":true,"idfv":"v","idfa":"a","uuid":"u","sandboxState":0)",
      "\t timestamp: 1\n\t osVersion: 12\n\t os: o\n\t displayPpi: 96\n"
      "\t displayResolution: 1x2\n\t displayDiagonal: 6.5\n\t manufacturer: mf\n\t model: md\n"
      "\t timeZoneOffset: -60\n\t rooted: 1\n\t isLimitAdTrackingEnabled: true\n\t idfv: v\n"
      "\t idfa: a\n\t uuid: u\n\t sandboxState: 0\n");
  expectForms(
      "lu",
      LevelUp{2, 1, 3, {{"g", 1}, {"h", -5}}, {{{"s", 1}}}, {{{"e", 2}}}, {{{"b", 3}}}, prog, "e"},
      R"("sessionId":2,"timestamp":1,"level":3,"balance":{"g":1,"h":-5},"spent":{"s":1},)"
      R"("earned":{"e":2},"bought":{"b":3}$)",
      "%\t balance: \n\t\t resource: g amount: 1\n\t\t resource: h amount: -5\n"
      "\t spent: \n\t\t resource: s amount: 1\n\t earned: \n\t\t resource: e amount: 2\n"
      "\t bought: \n\t\t resource: b amount: 3\n$");
  expectForms("cb", CurrentBalance{1, 2, 3, {{"g", 1}}, "e"},
              R"(%,"balance":{"g":1},"inExperiments":"e")",
              "%\t balance: \n\t\t resource: g amount: 1\n\t inExperiments: e\n");
  expectForms("tr", Tutorial{1, 2, 3, -2, prog, "e"}, R"(%,"step":-2$)", "%\t step: -2\n$");
  expectForms("pe", ProgressionEvent{1, 2, 3, "n", {{"s", 1}}, {{"e", 2}}, {true, 4, 5, "r"}, "e"},
              R"(%,"name":"n","spent":{"s":1},"earned":{"e":2},"parameters":{"success":true,)"
              R"("duration":4,"difficulty":5,"source":"r"},"inExperiments":"e")",
              "%\t name: n\n\t spent: \n\t\t resource: s amount: 1\n\t earned: \n"
              "\t\t resource: e amount: 2\n\t parameters:\n\t\t success: true\n\t\t duration: 4\n"
              "\t\t difficulty: 5\n\t\t source: r\n\t inExperiments: e\n");
  expectForms("rp", RealCurrencyPayment{1, 2, 3, "p", "o", 0.1, "EUR", prog, "e"},
              R"(%,"productId":"p","orderId":"o","price":0.1,"currencyCode":"EUR"$)",
              "%\t productId: p\n\t orderId: o\n\t price: 0.1\n\t currencyCode: EUR\n$");
  expectForms(
      "vp", VirtualCurrencyPayment{1, 2, 3, "i", 4, {{"g", 7}}, "t", prog, "e"},
      R"(%,"purchaseId":"i","purchaseAmount":4,"purchasePrice":{"g":7},"purchaseType":"t"$)",
      "%\t purchaseId: i\n\t purchaseAmount: 4\n\t purchasePrice: \n"
      "\t\t currency: g price: 7\n\t purchaseType: t\n$");
  expectForms(
      "ca",
      CurrencyAccrual{
          1, 2, 3, {{{"s", {{"a", 1}, {"b", 2}}}, {"t", {{"c", 3}}}}}, {{{"u", {{"d", 4}}}}}, "e"},
      R"(%,"earned":{"s":{"a":1,"b":2},"t":{"c":3}},"bought":{"u":{"d":4}},"inExperiments":"e")",
      "%\t earned: \n\t\tsource: s \n\t\tresources:\n\t\t\tresource: a amount: 1\n"
      "\t\t\tresource: b amount: 2\n\t\tsource: t \n\t\tresources:\n\t\t\tresource: c amount: 3\n"
      "\t bought: \n\t\tsource: u \n\t\tresources:\n\t\t\tresource: d amount: 4\n"
      "\t inExperiments: e\n");
  expectForms("ce", CustomEvent{1, 2, 3, "n\"", {{"b", true}, {"d", 0.5}, {"i", 7}}, prog, "e"},
              R"(%,"name":"n\"","parameters":{"b":true,"d":0.5,"i":7}$)",
              "%\t name: n\"\n\t parameters: \n\t\t parameter key: b value: true\n"
              "\t\t parameter key: d value: 0.5\n\t\t parameter key: i value: 7\n$");
  expectForms("sc", SocialNetworkConnect{1, 2, 3, "fb", prog, "e"}, R"(%,"socialNetwork":"fb"$)",
              "%\t socialNetwork: fb\n$");
  expectForms("sp", SocialNetworkPost{1, 2, 3, "fb", "r", prog, "e"},
              R"(%,"socialNetwork":"fb","postReason":"r"$)",
              "%\t socialNetwork: fb\n\t postReason: r\n$");
  expectForms("rf", Referral{1, 2, "s", "c", "t", "m", "w", prog, "e"},
              R"("timestamp":1,"sessionId":2,"source":"s","campaign":"c","content":"t",)"
              R"("medium":"m","term":"w"$)",
              "\t timestamp: 1\n\t sessionId: 2\n\t source: s\n\t campaign: c\n\t content: t\n"
              "\t medium: m\n\t term: w\n$");
  expectForms("adrv", AdImpression{1, 2, "sdk", "n", "p", "u", 2.0, prog, "e"},
              R"("timestamp":1,"sessionId":2,"source":"sdk","ad_network":"n","placement":"p",)"
              R"("ad_unit":"u","revenue":2.0$)",
              "\t timestamp: 1\n\t sessionId: 2\n\t source: sdk\n\t network: n\n"
              "\t placement: p\n\t unit: u\n\t revenue: 2.0\n$");
  expectForms("ts", TrackingStatus{1, true, prog, "e"}, R"("timestamp":1,"trackingAllowed":true$)",
              "\t timestamp: 1\n\t trackingAllowed: true\n$");
  expectForms("pt", PushToken{1, false, "t", "e"},
              R"("timestamp":1,"isAllowed":false,"token":"t","inExperiments":"e")",
              "\t timestamp: 1\n\t isAllowed: false\n\t token: t\n\t inExperiments: e\n");
  expectForms("po", PushOpened{1, 7, "b", "e"},
              R"("timestamp":1,"pushId":7,"button":"b","inExperiments":"e")",
              "\t timestamp: 1\n\t pushId: 7\n\t button: b\n\t inExperiments: e\n");
  expectForms("pl", PeopleEvent{1, 2, 3, {{{"k", "v"}}}, prog, "e"}, R"(%,"parameters":{"k":"v"}$)",
              "%\t parameters: \n\t\t parameter key: k value: v\n$");
  expectForms("sbs", SubscriptionPayment{1, 2, 3, "o", "p", "DE", "EUR", prog, "e"},
              R"(%,"orderId":"o","productId":"p","regionCode":"DE","currencyCode":"EUR"$)",
              "%\t orderId: o\n\t productId: p\n\t regionCode: DE\n\t currencyCode: EUR\n$");
  expectForms("sbsr", RestoredTransactionsEvent{1, "EUR", {{"p", {"x", "y"}}, {"q", {}}}},
              R"("timestamp":1,"currencyCode":"EUR","transactions":[{"productID":"p",)"
              R"("transactionIds":["x","y"]},{"productID":"q","transactionIds":[]}])",
              "\t timestamp: 1\n\t currencyCode: EUR\n\t transactions: \n\t\t product p \n"
              "\t\t transactionIds: \n \t\t\t x \n\t\t\t y \n"
              "\t\t product q \n\t\t transactionIds: \n ");
  expectForms(
      "sbsp",
      SubscriptionProductsEvent{
          1,
          {{"p", price("4.99"), "DE", "EUR", price("1.5"), {{{"d", price("0.10")}}}},
           {"q", {}, "", "", {}, {}}}},
      R"("timestamp":1,"products":[{"productId":"p","price":4.99,"regionCode":"DE",)"
      R"("currencyCode":"EUR","introductoryPrice":1.5,"discounts":{"d":0.1}},)"
      R"({"productId":"q","price":0,"regionCode":"","currencyCode":""}])",
      "\t timestamp: 1\n\t products: \n\t\t product 1 \n\t\t\t productId: p\n\t\t\t price: 4.99\n"
      "\t\t\t regionCode: DE\n\t\t\t currencyCode: EUR\n\t\t\t introductoryPrice: 1.5\n"
      "\t\t\t discounts: \n\t\t\t\t d: 0.1\n\t\t product 2 \n\t\t\t productId: q\n"
      "\t\t\t price: 0\n\t\t\t regionCode: \n\t\t\t currencyCode: \n");
}

TEST(Event, LeavesOutWhatIsAbsent) {
  expectForms("lu", LevelUp{2, 1, 3}, R"("sessionId":2,"timestamp":1,"level":3)", "%");
  expectForms("pe", ProgressionEvent{1, 2, 3}, R"(%,"name":"","parameters":{"success":false})",
              "%\t name: \n\t parameters:\n\t\t success: false\n");
  expectForms("ca", CurrencyAccrual{1, 2, 3}, "%", "%");
  expectForms("ce", CustomEvent{1, 2, 3}, R"(%,"name":"")", "%\t name: \n");
  expectForms("rf", Referral{1, 2}, R"("timestamp":1,"sessionId":2)",
              "\t timestamp: 1\n\t sessionId: 2\n");
  expectForms("adrv", AdImpression{},
              R"("timestamp":0,"sessionId":0,"source":"sdk","ad_network":"","revenue":0.0)",
              "\t timestamp: 0\n\t sessionId: 0\n\t source: sdk\n\t network: \n\t revenue: 0.0\n");
  expectForms("pl", PeopleEvent{1, 2, 3}, R"(%,"parameters":null)", "%");
  expectForms("pl", PeopleEvent{1, 2, 3, AnyCodable::Object()}, R"(%,"parameters":{})", "%");
  expectForms("sbsr", RestoredTransactionsEvent{1},
              R"("timestamp":1,"currencyCode":"","transactions":[])",
              "\t timestamp: 1\n\t currencyCode: \n");
  expectForms("sbsp", SubscriptionProductsEvent{1}, R"("timestamp":1,"products":[])",
              "\t timestamp: 1\n");
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
