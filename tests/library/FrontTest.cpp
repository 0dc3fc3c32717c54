#include <functional>

#include "JsonHelpers.h"
#include "LibraryTest.h"
#include "Validator.h"

namespace pelorino {
namespace {

using Call = std::function<void()>;

constexpr const char* given = R"(["b\noss"])";
constexpr const char* repaired = R"(["boss"])";
constexpr const char* wholeEvent = "[]";

struct Operation {
  std::string label;
  Call call;
  std::string code = {};      ///< Of its event, unless no exclusion stops it.
  std::string excluded = {};  ///< The values that switch this call off.
};

/// Every tracking operation with arguments that its rule repairs: `odd` loses its line feed.
/// Exclusions name some values as the host gave them and others as repaired.
std::vector<Operation> trackingOperations() {
  using Analytics = PLRAnalytics;
  const std::string odd = "b\noss";
  const auto network = PLRSocialNetwork(odd);
  const Analytics::Resources gold = {{"gold", 1}};
  const auto source = PLRReferralProperty::source();
  return {
      {"setUserId(_:)", [] { Analytics::setUserId("u"); }},
      {"replaceUserId(_:_:)", [] { Analytics::replace("a", "b"); }},
      {"setCurrentLevel(_:)", [] { Analytics::setCurrentLevel(2); }},
      {"setTrackingAvailability(_:)", [] { Analytics::setTrackingAvailability(true); }},
      {"sendBufferedEvents()", [] { Analytics::sendBufferedEvents(); }},
      {"customEvent(_:_:)", [=] { Analytics::customEvent(odd); }, "ce", given},
      {"currencyAccrual(_:_:_:_:)",
       [=] { Analytics::currencyAccrual("gold", 1, odd, PLRAccrualType::earned); }, "ca", given},
      {"virtualCurrencyPayment(_:_:_:_:)",
       [=] { Analytics::virtualCurrencyPayment(odd, "t", 1, 1, "gold"); }, "vp", given},
      {"startProgressionEvent(_:_:)", [=] { Analytics::startProgressionEvent(odd); }, "pe", given},
      {"finishProgressionEvent(_:_:)", [=] { Analytics::finishProgressionEvent(odd); }, "pe",
       given},
      {"tutorial(_:)", [] { Analytics::tutorial(7); }, "tr", "[7]"},
      {"socialNetworkConnect(_:)", [=] { Analytics::socialNetworkConnect(network); }, "sc",
       repaired},
      {"socialNetworkPost(_:_:)", [=] { Analytics::socialNetworkPost(network, "r"); }, "sp",
       repaired},
      // Without an argument only the whole event can be switched off.
      {"levelUp(_:_:)", [=] { Analytics::levelUp(2, gold); }, "lu", wholeEvent},
      {"currentBalance(_:)", [=] { Analytics::currentBalance(gold); }, "cb", wholeEvent},
      {"realCurrencyPayment(_:_:_:_:)",
       [=] { Analytics::realCurrencyPayment(odd, 1.5, "p", "EUR"); }, "rp", wholeEvent},
      {"referrer(_:)",
       [=] {
         Analytics::referrer({{source, odd}});
       },
       "rf", wholeEvent},
      {"adImpression(_:_:_:_:)", [] { Analytics::adImpression("n", 0.5, {}, {}); }, "adrv",
       wholeEvent},
      {"subscriptionHistory(_:)", [] { Analytics::subscriptionHistory({}); }, "sbsr", wholeEvent},
      {"subscriptionPayment(_:_:)", [] { PLREngineWrapper::engineSubscriprtionPayment("p", "t"); },
       "sbs", wholeEvent},
  };
}

class FrontTest : public LibraryTest {
 protected:
  /// Every getter, which notes its answer.
  std::vector<Operation> getters() {
    const auto text = [this](const std::string& value) { answers += value + "|"; };
    const auto boolean = [this](bool value) { answers += value ? "yes|" : "no|"; };
    const auto number = [this](std::int64_t value) { answers += std::to_string(value) + "|"; };
    return {
        {"getDeviceId(_:)", [=] { PLRAnalytics::getDeviceId(text); }},
        {"getSDKVersion(_:)", [=] { PLRAnalytics::getSDKVersion(text); }},
        {"getUserId(_:)", [=] { PLRAnalytics::getUserId(text); }},
        {"getCurrentLevel(_:)", [=] { PLRAnalytics::getCurrentLevel(number); }},
        {"getTrackingAvailability(_:)", [=] { PLRAnalytics::getTrackingAvailability(boolean); }},
        {"isRestoreTransactionHistoryRequired(_:)",
         [=] { PLRAnalytics::isRestoreTransactionHistoryRequired(boolean); }},
    };
  }

  std::string answers;
};

TEST_F(FrontTest, EveryOperationIsRefusedBeforeTheStartUnderItsOwnLabel) {
  auto operations = trackingOperations();
  operations.push_back({"customEvent(_:_:)", [] { PLRAnalytics::customEvent(""); }});
  std::ranges::move(getters(), std::back_inserter(operations));
  for (const auto& [label, call, code, excluded] : operations) {
    EXPECT_EQ(linesOf(call), std::vector{"ERROR In the " + label +
                                         " method an error has occurred: The SDK is not "
                                         "initialized yet!"});
  }
  EXPECT_EQ(answers, "|||1|no|no|");
}

TEST_F(FrontTest, GettersAnswerOnceStarted) {
  PLRAnalyticsConfiguration decided;
  decided.userId = "ann";
  decided.currentLevel = 5;
  start(decided);
  EXPECT_TRUE(logged("INFO Set level [5] for user [ann]"));
  PLRAnalytics::getUserId([](const std::string&) { throw std::runtime_error("a host's own"); });
  PLRAnalytics::getUserId(nullptr);
  for (const auto& getter : getters()) getter.call();
  EXPECT_EQ(answers, "") << "nothing runs on the caller's thread";
  system.runUntilIdle();
  EXPECT_EQ(answers, std::string(device) + "|2.1.2|ann|5|yes|yes|");
}

TEST_F(FrontTest, ExclusionsNameSomeValuesAsTheHostGaveThemAndOthersAsRepaired) {
  const auto isDropped = [this](const Operation& operation, const std::string& values) {
    Validator::setExcludedOptions(
        from<Validator::ExcludedOptions>("{\"" + operation.code + "\":" + values + "}"));
    return std::ranges::any_of(linesOf(operation.call), [&](const std::string& line) {
      return line.starts_with("INFO Event [" + operation.code + "]") &&
             line.ends_with("is excluded by project configuration");
    });
  };
  start();
  for (const Operation& operation : trackingOperations()) {
    if (operation.code.empty()) continue;
    EXPECT_TRUE(isDropped(operation, operation.excluded)) << operation.label;
    for (const char* others : {given, repaired, "[7]", R"(["x"])"}) {
      if (others == operation.excluded) continue;
      EXPECT_FALSE(isDropped(operation, others)) << operation.label << others;
    }
  }
  const Operation faulty{"", [] { PLRAnalytics::levelUp(9, {{"", 1}}); }, "lu"};
  EXPECT_TRUE(isDropped(faulty, wholeEvent));
  EXPECT_TRUE(
      logged("ERROR In the LevelUp method an error has occurred: \n\tThe [] key of the "
             "balances dictionary is empty!"))
      << "the rule comes first";
  const Operation empty{"", [] { PLREngineWrapper::engineSubscriprtionPayment("", ""); }, "sbs"};
  EXPECT_TRUE(isDropped(empty, wholeEvent));
  EXPECT_FALSE(logged("ERROR Execution of the SubscriptionPayment method was canceled!"))
      << "the exclusion comes first";
  Validator::setExcludedOptions(std::nullopt);
}

TEST(SharedInstances, HaveTheNamesThatTheBackendKnows) {
  std::string names;
  for (const auto* network :
       {&PLRSocialNetwork::facebook(), &PLRSocialNetwork::vkontakte(), &PLRSocialNetwork::twitter(),
        &PLRSocialNetwork::googleplus(), &PLRSocialNetwork::whatsapp(), &PLRSocialNetwork::viber(),
        &PLRSocialNetwork::evernote(), &PLRSocialNetwork::googlemail(),
        &PLRSocialNetwork::linkedin(), &PLRSocialNetwork::pinterest(), &PLRSocialNetwork::qzone(),
        &PLRSocialNetwork::reddit(), &PLRSocialNetwork::renren(), &PLRSocialNetwork::tumblr()}) {
    names += network->name() + ' ';
  }
  EXPECT_EQ(names, "fb vk tw gp wp vb en gm in pi qq rt rr tb ");
  EXPECT_EQ(PLRReferralProperty("term"), PLRReferralProperty::term());
  EXPECT_EQ(PLRReferralProperty::term().description(), "name: term");
}

}  // namespace
}  // namespace pelorino
