#include <pelorino/PLRStore.h>
#include <pelorino/PLRUserCard.h>

#include <array>
#include <set>

#include "Event.h"
#include "Host.h"
#include "PaymentEvents.h"
#include "ResolvedHost.h"
#include "StoreValues.h"
#include "TrackingTest.h"

namespace pelorino {
namespace {

using namespace std::chrono_literals;

/// A store that keeps the questions for the test to answer, or answers at once.
class ScriptedStore final : public PLRStore {
 public:
  std::shared_ptr<SKProductsRequest> makeProductsRequest(const std::set<std::string>& ids,
                                                         ProductsHandler handler) override {
    asked.push_back(ids);
    handlers.push_back(std::move(handler));
    if (fault) throw std::runtime_error(*fault);
    return makesNone ? nullptr : std::make_shared<Request>(*this);
  }

  std::optional<SKProductsResponse> answer;
  std::optional<std::string> fault;
  bool makesNone = false;
  std::vector<std::set<std::string>> asked;
  std::vector<ProductsHandler> handlers;
  int cancelled = 0;

 private:
  struct Request final : SKProductsRequest {
    explicit Request(ScriptedStore& owner) : store(owner) {}
    void start() override {
      if (store.answer) store.handlers.back()(*store.answer);
    }
    void cancel() override { ++store.cancelled; }
    ScriptedStore& store;
  };
};

SKProduct product(std::string id, SKDecimal price, std::string locale = "en_US") {
  return {.productIdentifier = id, .price = price, .priceLocale = {.identifier = locale}};
}

SKPaymentTransaction transaction(std::string productId, std::optional<std::string> original,
                                 std::optional<std::string> own = {}) {
  const SKPaymentTransaction first{.transactionIdentifier = original};
  return {own, {productId}, original ? std::make_shared<SKPaymentTransaction>(first) : nullptr};
}

class SubscriptionTest : public TrackingTest {
 protected:
  SubscriptionTest() { PLRHost::setStore(store); }
  ~SubscriptionTest() override { PLRHost::setStore(nullptr); }

  /// A new process, with this configuration and this store.
  void startWith(std::int64_t version, std::vector<SKProduct> products) {
    stop();
    configure(R"(,"sbsBundles":["p","q"],"sbsConfigVersion":)" + std::to_string(version));
    store->answer = SKProductsResponse{.products = std::move(products), .error = {}};
    start("ann");
  }

  /// What has been told since the last look of subscriptions, with its region, and of the card.
  std::string told() { return fields("'sbs','sbsp','sbsr','pl'", {"code", "regionCode"}); }

  bool isHistoryRequired() const {
    return answerOf<bool>(PLRAnalytics::isRestoreTransactionHistoryRequired);
  }
  std::string history() const { return rows("SELECT restoredTransaction FROM subscriptions"); }

  std::shared_ptr<ScriptedStore> store = std::make_shared<ScriptedStore>();
};

TEST_F(SubscriptionTest, AProductIsReportedWithWhatItsLocaleAndTheSystemTell) {
  const auto json = [](SKProduct sold) {
    const SubscriptionProductsEvent event{
        .products = {subscriptionProductOf(repaired(sold), Host::facts().hasStoreDiscounts())}};
    const std::string text = Event(event).getJson();
    return text.substr(text.find("price") - 1);
  };
  const std::array<std::string, 3> locales[] = {
      {"de-DE", "DE", "EUR"}, {"zh_Hant_TW.UTF-8", "TW", "TWD"},
      {"es-419", "419", ""},  {"en_AD@collation=x;currency=gbp", "AD", "GBP"},
      {"en_ZW", "ZW", "USD"}, {"\xFF", "", ""},
  };
  for (const auto& [locale, region, currency] : locales) {
    EXPECT_EQ(
        json(product("p", SKDecimal("much"), locale)),
        R"("price":0,"regionCode":")" + region + R"(","currencyCode":")" + currency + R"("}]})");
  }

  SKProduct full = product("p", 4.99);
  full.priceLocale.regionCode = "CA";
  full.priceLocale.currencyCode = "CAD";
  full.introductoryPrice = {{.identifier = {}, .price = 0.5}};
  full.discounts = {{"d", 3}, {{}, 9}, {"e", SKDecimal("1.10")}, {"d", 2}};
  const std::pair<std::optional<std::string>, bool> systems[] = {
      {{}, true},     {"12.2", true},    {"12.10.1", true},
      {"9.3", false}, {"12.1.9", false}, {"none", false},
  };
  for (const auto& [version, hasDiscounts] : systems) {
    PLRHostDescription description;
    description.systemVersion = version;
    PLRHost::describe(description);
    const std::string more = R"(,"introductoryPrice":0.5,"discounts":{"d":2,"e":1.1})";
    EXPECT_EQ(json(full), R"("price":4.99,"regionCode":"CA","currencyCode":"CAD")" +
                              (hasDiscounts ? more : "") + "}]}")
        << version.value_or("not told");
  }
}

TEST_F(SubscriptionTest, AStoreThatFailsIsAskedAgainLaterAndLater) {
  const struct {
    std::string error;
    std::int64_t wait;
    std::function<void()> next;  ///< What the store does from then on.
  } faults[] = {
      {"The host has set no store", 60,
       [&] {
         PLRHost::setStore(store);
         store->answer = {.products = {}, .error = "offline"};
       }},
      {"offline", 120, [&] { store->makesNone = true; }},
      {"The store has made no request", 180, [&] { store->fault = "broken"; }},
      {"broken", 240, [] {}},
      {"broken", 240,
       [&] {
         store->fault.reset();
         store->makesNone = false;
         store->answer = {.products = {product("p", 1)}, .error = {}};
       }},
  };
  configure(R"(,"sbsBundles":["p"],"sbsConfigVersion":1)");
  PLRHost::setStore(nullptr);
  restart("ann");
  for (const auto& [error, wait, next] : faults) {
    EXPECT_TRUE(logged("DEBUG Request products failed with error: " + error));
    EXPECT_TRUE(logged("DEBUG Retry request products after " + std::to_string(wait) + " seconds"));
    next();
    const auto asked = store->asked.size();
    system.advance(std::chrono::seconds(wait) - 1ms);
    EXPECT_EQ(store->asked.size(), asked);
    system.advance(1ms);
    EXPECT_EQ(store->asked.size(), asked + 1);
  }
  EXPECT_EQ(told(), "sbsp|");
  store->handlers.back()({.products = {}, .error = "a second answer"});
  EXPECT_FALSE(logged("DEBUG Request products failed with error: a second answer"));
}

TEST_F(SubscriptionTest, AnswersThatAreNotAwaitedAnyMoreChangeNothing) {
  configure(R"(,"sbsBundles":["p"],"sbsConfigVersion":1)");
  restart("ann");
  configure(R"(,"sbsBundles":["q"],"sbsConfigVersion":2)");
  for (const bool value : {false, true}) PLRAnalytics::setTrackingAvailability(value);
  system.runUntilIdle();
  EXPECT_EQ(store->asked, (std::vector<std::set<std::string>>{{"p"}, {"q"}}));
  EXPECT_EQ(store->cancelled, 1);
  store->handlers[0]({.products = {product("p", 1)}, .error = {}});
  EXPECT_EQ(told(), "");
  stop();
  EXPECT_EQ(store->cancelled, 2);
  store->handlers[1]({.products = {product("q", 1)}, .error = {}});
  EXPECT_EQ(told(), "");
  EXPECT_EQ(rows("SELECT count(*) FROM subscriptions WHERE products <> '[]'"), "0");
}

TEST_F(SubscriptionTest, ProductsAreReportedWhenTheyChangeAndTheHistoryOncePerChange) {
  EXPECT_TRUE(store->asked.empty()) << "the backend has named no products";
  EXPECT_TRUE(isHistoryRequired());
  const SKProduct p = product("p", 4.99);
  const struct {
    const char* label;
    std::int64_t version;
    std::vector<SKProduct> products;
    const char* wanted;
    bool asksHistory;
  } starts[] = {
      {"first answer", 4, {p, product("other", 1)}, "sbsp|", true},
      {"the same, almost", 4, {product("p", SKDecimal("4.99005"), "de_US")}, "", false},
      {"another price", 4, {product("p", SKDecimal("4.9901"))}, "sbsp|", true},
      {"another version", 5, {product("p", SKDecimal("4.9901"))}, "", true},
      {"a version of 0", 0, {product("p", SKDecimal("4.9901"))}, "", false},
      {"none at all", 6, {}, "", false},
      {"one more", 6, {product("p", SKDecimal("4.9901")), product("q", 1)}, "sbsp|", true},
  };
  for (const auto& c : starts) {
    SCOPED_TRACE(c.label);
    startWith(c.version, c.products);
    EXPECT_EQ(told(), c.wanted);
    EXPECT_EQ(isHistoryRequired(), c.asksHistory);
    PLRAnalytics::subscriptionHistory({transaction("p", "A")});
    EXPECT_EQ(told(), c.asksHistory ? "sbsr|" : "");
    EXPECT_FALSE(isHistoryRequired());
    EXPECT_EQ(history(), "[]");
  }
  EXPECT_EQ(rows("SELECT alreadyRestored, alreadySendRestoreEvent, productIsChanged "
                 "FROM subscriptions"),
            "1|1|0");
  EXPECT_TRUE(logged("DEBUG Not found any products for list: \n\t\tp,\n\t\tq"));
}

TEST_F(SubscriptionTest, TheHistoryWaitsUntilACurrencyIsKnown) {
  PLREngineWrapper::engineSubscriptionHistory({{"p", {"A", "B", "A"}}});
  EXPECT_EQ(history(), R"([{"productID":"p","transactionIds":["A","B","A"]}])");
  stop();
  rows("DELETE FROM subscriptions");
  start("ann");
  PLRAnalytics::subscriptionHistory({transaction("p", "A"), transaction("p", "B"),
                                     transaction("q", "C"), transaction("p", "A"),
                                     transaction("without an original", {}, "X")});
  PLREngineWrapper::engineSubscriptionHistory({{"late", {"Z"}}});
  EXPECT_FALSE(isHistoryRequired());
  EXPECT_EQ(
      history(),
      R"([{"productID":"p","transactionIds":["A"]},{"productID":"q","transactionIds":["C"]}])")
      << "one that comes again begins the list of its product anew";
  EXPECT_EQ(timesLogged("DEBUG SubscriptionsHistory: Not enough data to send the event, \n"
                        "\tmissing product CurrencyCode"),
            2);
  startWith(1, {product("p", 1, "en_GB")});
  EXPECT_EQ(told(), "sbsp|\nsbsr|");
  EXPECT_TRUE(holds(delivered.back(), R"("currencyCode":"GBP","transactions":[{"productID":"p")"));
  EXPECT_FALSE(isHistoryRequired());
  EXPECT_EQ(history(), "[]");
}

TEST_F(SubscriptionTest, APaymentIsReportedOnceForEachOriginalPurchase) {
  startWith(1, {product("p", 4.99, "en_GB")});
  told();
  const SKProduct known = product("p", 4.99, "en_GB"), q = product("q", 1), r = product("r", 1);
  const auto pay = [](SKPaymentTransaction paid, SKProduct sold) {
    return [=] { PLRAnalytics::subscriptionPayment(paid, sold); };
  };
  const auto payIds = [](const char* productId, const char* orderId) {
    return [=] { PLREngineWrapper::engineSubscriprtionPayment(productId, orderId); };
  };
  const struct {
    const char* label;
    std::function<void()> pay;
    const char* wanted;
  } cases[] = {
      {"first", pay(transaction("p", "A", "A"), known), "sbs|GB\npl|"},
      {"restored", pay(transaction("p", "A", "A"), known), ""},
      {"renewed", pay(transaction("p", "A", "A2"), known), ""},
      {"renewed, new product", pay(transaction("q", "A", "A3"), q), "sbsp|\npl|"},
      {"without an original", pay(transaction("p", {}, "B"), known), "sbs|GB\npl|"},
      {"known, without an original", pay(transaction("p", {}, "B"), known), ""},
      {"new product", pay(transaction("r", "C"), r), "sbs|US\nsbsp|\npl|"},
      {"without any identifier", pay(transaction("p", {}), known), ""},
      {"of an engine", payIds("p", "D"), "sbs|GB"},
      {"known, of an engine", payIds("p", "C"), ""},
      {"unknown product of an engine", payIds("\x01x", "E"), "sbs|"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.label);
    PLRUserCard::set("paid", std::string_view(c.label));
    c.pay();
    EXPECT_EQ(told(), c.wanted);
    EXPECT_EQ(rows("SELECT count(*) FROM events"), "0") << "it leaves at once";
  }
  for (const auto& [order, times] : {std::pair("A", 2), {"B", 1}, {"C", 1}}) {
    EXPECT_EQ(timesLogged("DEBUG Subscription payment with orderId [" + std::string(order) +
                          "] is renewal"),
              times);
  }
  EXPECT_TRUE(logged("ERROR Subscription payment transactionIdentifier is nil"));
  EXPECT_EQ(rows("SELECT group_concat(orderId, ' ') FROM realPaymentMarks"), "A B C D E");
}

}  // namespace
}  // namespace pelorino
