#include <functional>
#include <map>
#include <utility>

#include "JsonHelpers.h"
#include "LibraryTest.h"
#include "Validator.h"

namespace pelorino {
namespace {

using Call = std::function<void()>;

/// Every tracking operation with arguments that its rule repairs: `odd` loses its line feed.
std::vector<std::pair<std::string, Call>> trackingCalls() {
  const std::string odd = "b\noss";
  const auto network = PLRSocialNetwork(odd);
  return {
      {"setUserId(_:)", [] { PLRAnalytics::setUserId("u"); }},
      {"replaceUserId(_:_:)", [] { PLRAnalytics::replace("a", "b"); }},
      {"setCurrentLevel(_:)", [] { PLRAnalytics::setCurrentLevel(2); }},
      {"setTrackingAvailability(_:)", [] { PLRAnalytics::setTrackingAvailability(true); }},
      {"levelUp(_:_:)",
       [] {
         PLRAnalytics::levelUp(2, {{"", 1}});
       }},
      {"currentBalance(_:)",
       [] {
         PLRAnalytics::currentBalance({{"gold", 1}});
       }},
      {"customEvent(_:_:)", [=] { PLRAnalytics::customEvent(odd); }},
      {"currencyAccrual(_:_:_:_:)",
       [=] { PLRAnalytics::currencyAccrual("gold", 1, odd, PLRAccrualType::earned); }},
      {"virtualCurrencyPayment(_:_:_:_:)",
       [=] { PLRAnalytics::virtualCurrencyPayment(odd, "t", 1, 1, "gold"); }},
      {"startProgressionEvent(_:_:)", [=] { PLRAnalytics::startProgressionEvent(odd); }},
      {"finishProgressionEvent(_:_:)", [=] { PLRAnalytics::finishProgressionEvent(odd); }},
      {"realCurrencyPayment(_:_:_:_:)",
       [=] { PLRAnalytics::realCurrencyPayment(odd, 1.5, "p", "EUR"); }},
      {"tutorial(_:)", [] { PLRAnalytics::tutorial(7); }},
      {"socialNetworkConnect(_:)", [=] { PLRAnalytics::socialNetworkConnect(network); }},
      {"socialNetworkPost(_:_:)", [=] { PLRAnalytics::socialNetworkPost(network, "r"); }},
      {"referrer(_:)",
       [=] {
         PLRAnalytics::referrer({{PLRReferralProperty::source(), odd}});
       }},
      {"sendBufferedEvents()", [] { PLRAnalytics::sendBufferedEvents(); }},
      {"adImpression(_:_:_:_:)", [] { PLRAnalytics::adImpression("n", 0.5, {}, {}); }},
      {"subscriptionHistory(_:)", [] { PLRAnalytics::subscriptionHistory({}); }},
      {"subscriptionPayment(_:_:)", [] { PLREngineWrapper::engineSubscriprtonPayment("p", "t"); }},
  };
}

class FrontTest : public LibraryTest {
 protected:
  /// The lines that a call leads to.
  std::vector<std::string> linesOf(const Call& call) {
    const auto before = static_cast<std::ptrdiff_t>(log.lines().size());
    call();
    system.runUntilIdle();
    auto lines = log.lines();
    lines.erase(lines.begin(), lines.begin() + before);
    return lines;
  }
};

TEST_F(FrontTest, EveryOperationIsRefusedBeforeTheStartUnderItsOwnLabel) {
  for (const auto& [label, call] : trackingCalls()) {
    EXPECT_EQ(linesOf(call),
              std::vector{"ERROR In the " + label +
                          " method an error has occurred: The SDK is not initialized "
                          "yet!"});
  }
  std::string answer;
  PLRAnalytics::isRestoreTransactionHistoryRequired([&](bool is) { answer = is ? "yes" : "no"; });
  system.runUntilIdle();
  EXPECT_EQ(answer, "no");
}

TEST_F(FrontTest, ExclusionsNameSomeValuesAsTheHostGaveThemAndOthersAsRepaired) {
  const std::string given = R"(["b\noss"])";
  const std::string repaired = R"(["boss"])";
  const std::map<std::string, std::pair<std::string, std::string>> matching = {
      // Label to code and the values that switch it off.
      {"customEvent(_:_:)", {"ce", given}},
      {"currencyAccrual(_:_:_:_:)", {"ca", given}},
      {"virtualCurrencyPayment(_:_:_:_:)", {"vp", given}},
      {"startProgressionEvent(_:_:)", {"pe", given}},
      {"finishProgressionEvent(_:_:)", {"pe", given}},
      {"tutorial(_:)", {"tr", "[7]"}},
      {"socialNetworkConnect(_:)", {"sc", repaired}},
      {"socialNetworkPost(_:_:)", {"sp", repaired}},
      // Without an argument only the whole event can be switched off.
      {"levelUp(_:_:)", {"lu", "[]"}},
      {"currentBalance(_:)", {"cb", "[]"}},
      {"realCurrencyPayment(_:_:_:_:)", {"rp", "[]"}},
      {"referrer(_:)", {"rf", "[]"}},
      {"adImpression(_:_:_:_:)", {"adrv", "[]"}},
      {"subscriptionHistory(_:)", {"sbsr", "[]"}},
      {"subscriptionPayment(_:_:)", {"sbs", "[]"}},
  };
  const auto isDropped = [this](const std::string& code, const std::string& values,
                                const Call& call) {
    Validator::setExcludedOptions(
        from<Validator::ExcludedOptions>("{\"" + code + "\":" + values + "}"));
    return std::ranges::any_of(linesOf(call), [&](const std::string& line) {
      return line.starts_with("INFO Event [" + code + "]") &&
             line.ends_with("is excluded by project configuration");
    });
  };
  start();
  for (const auto& [label, call] : trackingCalls()) {
    const auto found = matching.find(label);
    if (found == matching.end()) continue;
    const auto& [code, values] = found->second;
    EXPECT_TRUE(isDropped(code, values, call)) << label;
    for (const auto& others : {given, repaired, std::string("[7]"), std::string(R"(["x"])")}) {
      if (others == values) continue;
      EXPECT_FALSE(isDropped(code, others, call)) << label << others;
    }
  }
  EXPECT_TRUE(isDropped("lu", "[]", [] { PLRAnalytics::levelUp(9, {{"", 1}}); }));
  EXPECT_TRUE(
      logged("ERROR In the LevelUp method an error has occurred: \n\tThe [] key of the "
             "balances dictionary is empty!"))
      << "the rule comes first";
  Validator::setExcludedOptions(std::nullopt);
}

TEST(SharedInstances, AreOneForEachName) {
  EXPECT_EQ(&PLRSocialNetwork::facebook(), &PLRSocialNetwork::facebook());
  EXPECT_EQ(PLRReferralProperty("term"), PLRReferralProperty::term());
  EXPECT_EQ(PLRReferralProperty::term().description(), "name: term");
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
}

}  // namespace
}  // namespace pelorino
