#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "EventCalls.h"
#include "IdentityCalls.h"
#include "LogCapture.h"
#include "PaymentCalls.h"
#include "ProgressCalls.h"
#include "Validator.h"

namespace pelorino {
namespace {

using Lines = std::vector<std::string>;
namespace R = ValidatorRules;
using Parameters = CustomEventCall::Params;

std::string error(const std::string& method, const std::string& rest) {
  return "ERROR In the " + method + " method an error has occurred: \n\t" + rest;
}

std::string warning(const std::string& method, const std::string& label, const std::string& text,
                    std::size_t length) {
  return "WARNING In the " + method + " method an error has occurred:\n\t" + label + ": " + text +
         " is longer than it is permitted.\n\tThe string was truncated to '" +
         std::to_string(length) + "'!";
}

std::string canceled(const std::string& method) {
  return "ERROR Execution of the " + method + " method was canceled!";
}

/// Sends a value through a rule as one field of a call that is good apart from it.
template <class Call, class Field>
auto through(std::optional<Call> (*rule)(Call), Call call, Field Call::*field) {
  return [=](const Field& value) mutable -> std::optional<Field> {
    call.*field = value;
    const std::optional<Call> repaired = rule(call);
    if (!repaired) return std::nullopt;
    return (*repaired).*field;
  };
}

using Balances = std::optional<Resources> (*)(Resources);

std::optional<Resources> levelUp(Resources balances) {
  return R::validateLevelUp({2, std::move(balances)})->balances;
}
std::optional<Resources> balance(Resources given) {
  return through(R::validateCurrentBalance, {}, &CurrentBalanceCall::balance)(given);
}
std::optional<Resources> payment(Resources price) {
  return R::validateVirtualCurrencyPayment({"i", "t", 1, std::move(price)})->resources;
}
std::optional<Resources> spent(Resources amounts) {
  return R::validateFinishProgressionEvent({"n", {true, 0, std::move(amounts), {}}})
      ->parameters.spent;
}
std::optional<Resources> earned(Resources amounts) {
  return R::validateFinishProgressionEvent({"n", {true, 0, {}, std::move(amounts)}})
      ->parameters.earned;
}

/// The key and the amount of a dictionary's other entry, as it comes out beside ("~", 1).
std::function<std::optional<std::string>(const std::string&)> key(Balances rule) {
  return [rule](const std::string& given) -> std::optional<std::string> {
    const Resources kept = *rule({{given, 1}, {"~", 1}});
    return kept.size() == 2 ? std::optional(kept.begin()->first) : std::nullopt;
  };
}
std::function<std::optional<std::int64_t>(std::int64_t)> amount(Balances rule) {
  return [rule](std::int64_t given) -> std::optional<std::int64_t> {
    const Resources kept = *rule({{"k", given}, {"~", 1}});
    return kept.size() == 2 ? std::optional(kept.at("k")) : std::nullopt;
  };
}

/// What a bad argument does: it ends the call, drops its entry, becomes absent, stays.
enum class Bad { rejects, drops, leaves, stays };
using enum Bad;

/// A label with what was given in the place of its star.
std::string labelOf(std::string label, const std::string& given) {
  const std::size_t star = label.find('*');
  return star == std::string::npos ? label : label.replace(star, 1, given);
}

TEST(ValidatorRules, ATextIsCleanedAndCutAndMayNeedContent) {
  using Text = std::string;
  using Result = std::optional<Text>;
  struct Row {
    const char* method;
    const char* label;
    std::size_t limit;
    Bad outcome;
    std::function<Result(const Text&)> run;
  };
  const AdImpressionCall ad{"n", 0.0, {}, {}};
  const CurrencyAccrualCall accrual{"c", 1, "s", PLRAccrualType::bought};
  const VirtualCurrencyPaymentCall price{"i", "t", 1, {{"r", 1}}};
  const RealCurrencyPaymentCall real{"o", 1.0, "p", "EUR"};
  const auto adText = [&](Result AdImpressionCall::*field) {
    return [=](const Text& text) { return *through(R::validateAdImpression, ad, field)(text); };
  };
  const auto parameterKey = [](const Text& text) -> Result {
    const auto kept = R::validateCustomEvent({"n", {{text, "v"}}})->params;
    return kept.empty() ? std::nullopt : Result(kept.begin()->first);
  };
  const auto parameterText = [](const Text& text) -> Result {
    const auto kept = R::validateCustomEvent({"n", {{"k", text}}})->params;
    return kept.empty() ? std::nullopt : Result(*kept.front().second.text());
  };
  const auto referrer = [](const Text& text) -> Result {
    const auto kept = R::validateReferrer({{{"source", "s"}, {"term", text}}})->utmData;
    return kept.contains("term") ? Result(kept.at("term")) : std::nullopt;
  };
  const auto source = [](const Text& text) {
    return R::validateStartProgressionEvent({"n", {0, text}})->parameters.source;
  };
  const Row rows[] = {
      {"Initialize", "The application key argument value", 255, rejects, R::validateInitializeKey},
      {"Initialize", "The user id argument value", 64, drops,
       [](auto& id) { return R::validateInitialize({{.userId = id}})->userId; }},
      {"SetUserId", "The user id argument value", 64, drops,
       [](auto& id) { return R::validateUserId("SetUserId", id); }},
      {"replaceUserId", "The user id argument value", 64, rejects,
       through(R::validateReplaceUserId, {"p", "u"}, &ReplaceUserIdCall::prevUserName)},
      {"replaceUserId", "The user id argument value", 64, rejects,
       through(R::validateReplaceUserId, {"p", "u"}, &ReplaceUserIdCall::userName)},
      {"LevelUp", "The [*] key of the balances dictionary", 24, drops, key(levelUp)},
      {"CurrentBalance", "The [*] key of the balances dictionary", 24, drops, key(balance)},
      {"CustomEvent", "The custom event name", 72, rejects,
       through(R::validateCustomEvent, {}, &CustomEventCall::name)},
      {"CustomEvent", "The key of the parameters dictionary", 32, drops, parameterKey},
      {"CustomEvent", "The value of the parameters dictionary by [k] key", 255, drops,
       parameterText},
      {"CurrencyAccrual", "The currency name", 24, rejects,
       through(R::validateCurrencyAccrual, accrual, &CurrencyAccrualCall::currencyName)},
      {"CurrencyAccrual", "The source", 32, rejects,
       through(R::validateCurrencyAccrual, accrual, &CurrencyAccrualCall::source)},
      {"VirtualCurrencyPayment", "The [*] key of the resources dictionary", 24, drops,
       key(payment)},
      {"VirtualCurrencyPayment", "The purchase identifier", 32, rejects,
       through(R::validateVirtualCurrencyPayment, price, &VirtualCurrencyPaymentCall::purchaseId)},
      {"VirtualCurrencyPayment", "The purchase type", 96, rejects,
       through(R::validateVirtualCurrencyPayment, price,
               &VirtualCurrencyPaymentCall::purchaseType)},
      {"StartProgressionEvent", "The event name argument value", 40, rejects,
       through(R::validateStartProgressionEvent, {}, &StartProgressionEventCall::eventName)},
      {"StartProgressionEvent", "The source parameter value", 40, stays, source},
      {"FinishProgressionEvent", "The event name argument value", 40, rejects,
       through(R::validateFinishProgressionEvent, {}, &FinishProgressionEventCall::eventName)},
      {"FinishProgressionEvent", "The [*] key of the spent dictionary", 24, drops, key(spent)},
      {"FinishProgressionEvent", "The [*] key of the earned dictionary", 24, drops, key(earned)},
      {"RealCurrencyPayment", "The order id argument value", 65, rejects,
       through(R::validateRealCurrencyPayment, real, &RealCurrencyPaymentCall::orderId)},
      {"RealCurrencyPayment", "The product id parameter value", 255, rejects,
       through(R::validateRealCurrencyPayment, real, &RealCurrencyPaymentCall::productId)},
      {"SocialNetworkConnect", "The social network name argument value", 24, rejects,
       through(R::validateSocialNetworkConnect, {}, &SocialNetworkConnectCall::name)},
      {"SocialNetworkPost", "The social network name argument value", 24, rejects,
       through(R::validateSocialNetworkPost, {"n", "r"}, &SocialNetworkPostCall::name)},
      {"SocialNetworkPost", "The post reason argument value", 32, rejects,
       through(R::validateSocialNetworkPost, {"n", "r"}, &SocialNetworkPostCall::reason)},
      {"Referrer", "The [*] value of the utm data dictionary by [term] key", 255, drops, referrer},
      {"AdImpression", "The network argument value", 100, rejects,
       through(R::validateAdImpression, ad, &AdImpressionCall::network)},
      {"AdImpression", "The placement argument value", 100, leaves,
       adText(&AdImpressionCall::placement)},
      {"AdImpression", "The unit argument value", 100, leaves, adText(&AdImpressionCall::unit)},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(std::string(row.method) + ": " + row.label);
    const auto expect = [&](const Text& given, const Result& want, const Lines& lines) {
      const LogCapture log;
      EXPECT_EQ(row.run(given), want);
      EXPECT_EQ(log.lines(), lines);
    };
    const Text atLimit(row.limit, 'x');
    Text accents;
    for (std::size_t i = 0; i < row.limit; ++i) accents += "e\u0301";
    expect("\n" + atLimit + "\u200B", atLimit, {});
    expect(accents, accents, {});
    expect(atLimit + "y", atLimit,
           {warning(row.method, labelOf(row.label, atLimit + "y"), atLimit + "y", row.limit)});

    Lines lines;
    if (row.outcome == rejects || row.outcome == drops) {
      lines.push_back(error(row.method, labelOf(row.label, "") + " is empty!"));
    }
    if (row.outcome == rejects) lines.push_back(canceled(row.method));
    expect("\t\u200B", row.outcome == stays ? Result("") : std::nullopt, lines);
  }
  EXPECT_EQ(R::validateSocialNetworkConnect({Text(10'000'000, 'n')})->name, Text(24, 'n'));
}

TEST(ValidatorRules, AnIntegerLiesBetweenItsBounds) {
  using Integer = std::int64_t;
  constexpr Integer most = std::numeric_limits<Integer>::max();
  constexpr Integer most32 = std::numeric_limits<std::int32_t>::max();
  struct Row {
    const char* method;
    const char* label;
    Integer min;
    Integer max;
    Bad outcome;
    std::function<std::optional<Integer>(Integer)> run;
  };
  const auto difficulty = [](Integer value) {
    const auto call = R::validateStartProgressionEvent({"n", {value, {}}});
    return call ? call->parameters.difficulty : std::nullopt;
  };
  const auto duration = [](Integer value) {
    const auto call = R::validateFinishProgressionEvent({"n", {true, value, {}, {}}});
    return call ? std::optional(call->parameters.duration) : std::nullopt;
  };
  const Row rows[] = {
      {"Initialize", "The current level argument value", 1, most32 - 1, drops,
       [](Integer level) { return R::validateInitialize({{.level = level}})->level; }},
      {"SetCurrentLevel", "The level argument value", 1, most32 - 1, rejects,
       through(R::validateCurrentLevel, {}, &SetCurrentLevelCall::level)},
      {"LevelUp", "The level argument value", 1, most32 - 1, rejects,
       through(R::validateLevelUp, {}, &LevelUpCall::level)},
      {"CurrencyAccrual", "The currency amount", 1, most32, rejects,
       through(R::validateCurrencyAccrual, {"c", 1, "s", {}},
               &CurrencyAccrualCall::currencyAmount)},
      {"VirtualCurrencyPayment", "The purchase amount", 1, most32, rejects,
       through(R::validateVirtualCurrencyPayment, {"i", "t", 1, {{"r", 1}}},
               &VirtualCurrencyPaymentCall::purchaseAmount)},
      {"VirtualCurrencyPayment", "The value of the resources dictionary", 1, most32, drops,
       amount(payment)},
      {"StartProgressionEvent", "The difficulty parameter value", 0, most32, rejects, difficulty},
      {"FinishProgressionEvent", "The duration parameter value", 0, most32, rejects, duration},
      {"FinishProgressionEvent", "The value of the spent dictionary", 1, most, drops,
       amount(spent)},
      {"FinishProgressionEvent", "The value of the earned dictionary", 1, most, drops,
       amount(earned)},
      {"Tutorial", "The step argument value", -2, most32, rejects,
       through(R::validateTutorial, {}, &TutorialCall::step)},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(std::string(row.method) + ": " + row.label);
    const auto expectFailure = [&](Integer value, const char* words, Integer bound) {
      const LogCapture log;
      EXPECT_EQ(row.run(value), std::nullopt);
      Lines lines{error(row.method, std::string(row.label) + " [" + std::to_string(value) +
                                        "] is " + words + " [" + std::to_string(bound) +
                                        "] permitted value!")};
      if (row.outcome == rejects) lines.push_back(canceled(row.method));
      EXPECT_EQ(log.lines(), lines);
    };
    expectFailure(row.min - 1, "less than the min", row.min);
    if (row.max != most) expectFailure(row.max + 1, "greater than the max", row.max);
    const LogCapture log;
    EXPECT_EQ(row.run(row.min), row.min);
    EXPECT_EQ(row.run(row.max), row.max);
    EXPECT_EQ(log.lines(), Lines());
  }
}

TEST(ValidatorRules, APriceIsFiniteAndARevenueNotNegativeEither) {
  using Limits = std::numeric_limits<double>;
  const auto isPrice = [](double value) {
    return R::validateRealCurrencyPayment({"o", value, "p", "EUR"}).has_value();
  };
  const auto isRevenue = [](double value) {
    return R::validateAdImpression({"n", value, {}, {}}).has_value();
  };
  for (const double value : {-0.0, Limits::denorm_min(), Limits::max()}) {
    EXPECT_TRUE(isPrice(value) && isRevenue(value)) << value;
  }
  EXPECT_TRUE(isPrice(-Limits::denorm_min()));
  EXPECT_FALSE(isRevenue(-Limits::denorm_min()));
  for (const double value : {Limits::infinity(), -Limits::infinity(), Limits::quiet_NaN()}) {
    EXPECT_TRUE(!isPrice(value) && !isRevenue(value)) << value;
  }
}

TEST(ValidatorRules, ACurrencyCodeIsMeasuredCleanAndGoesOnAsItCame) {
  auto code = through(R::validateRealCurrencyPayment, {"o", 1.0, "p", ""},
                      &RealCurrencyPaymentCall::currencyCode);
  for (const std::string given : {"EUR", "E\nUR", "e\u0301UR"}) EXPECT_EQ(code(given), given);
}

TEST(ValidatorRules, EveryBadArgumentIsToldInOrderBeforeTheVerdict) {
  const auto expect = [](const char* method, const auto& rule, const auto& call,
                         const Lines& beginnings) {
    SCOPED_TRACE(method);
    const LogCapture log;
    EXPECT_FALSE(rule(call).has_value());
    Lines lines = log.lines();
    ASSERT_EQ(lines.size(), beginnings.size() + 1);
    for (std::size_t i = 0; i < beginnings.size(); ++i) {
      const std::string want = error(method, beginnings[i]);
      EXPECT_EQ(lines[i].substr(0, want.size()), want);
    }
    EXPECT_EQ(lines.back(), canceled(method));
  };
  const double nan = std::numeric_limits<double>::quiet_NaN();
  expect("CurrentBalance", R::validateCurrentBalance, CurrentBalanceCall{{{"\n", 1}}},
         {"The [] key of", "The balance parameter value is empty!"});
  expect("FinishProgressionEvent", R::validateFinishProgressionEvent,
         FinishProgressionEventCall{"", {true, -1, {{"\n", 0}, {"s", 0}}, {{"e", 0}}}},
         {"The event name", "The duration", "The [] key of the spent", "The value of the spent",
          "The value of the earned"});
  expect("RealCurrencyPayment", R::validateRealCurrencyPayment,
         RealCurrencyPaymentCall{"", nan, "", "E\nU"},
         {"The currency code parameter value is invalid\n\tParameter [EU] length must be equal to "
          "[3].",
          "The price argument value \n\tParameter cannot be NAN.", "The order id", "The product"});
  expect("Referrer", R::validateReferrer, ReferrerCall{{{"term", ""}}},
         {"The [] value of", "The referrer argument value is empty!"});

  const LogCapture log;
  EXPECT_FALSE(R::validateVirtualCurrencyPayment({}).has_value());
  EXPECT_EQ(log.lines().at(1), "ERROR VirtualCurrencyPayment has empty Resources dictionary!");
  EXPECT_EQ(log.lines().size(), 5U) << "amount, resources, identifier, type, verdict";
}

TEST(ValidatorRules, OfKeysThatBecomeEqualTheLaterOneStays) {
  const std::string longKey(24, 'k');
  EXPECT_EQ(levelUp({{"\n", 3}, {"b\n", 4}, {"b\t", 5}, {longKey + "1", 1}, {longKey + "2", 2}}),
            (Resources{{"b", 4}, {longKey, 2}}));
}

TEST(ValidatorRules, AnEmptyUserIdOfTheConfigurationAsksForTheDefaultUser) {
  EXPECT_FALSE(R::validateInitialize(std::nullopt).has_value());
  const LogCapture log;
  EXPECT_EQ(R::validateInitialize({{.userId = ""}})->userId, "");
  EXPECT_EQ(log.lines(), Lines());
}

TEST(ValidatorRules, ABadParameterCostsOnlyItself) {
  const auto expectParameters = [](const Parameters& given, const Parameters& want,
                                   const Lines& lines) {
    const LogCapture log;
    const auto event = R::validateCustomEvent({"boss", given});
    ASSERT_TRUE(event.has_value());
    EXPECT_EQ(event->name, "boss");
    EXPECT_EQ(event->params, want);
    EXPECT_EQ(log.lines(), lines);
  };
  const std::string keyLabel = "The key of the parameters dictionary";
  const auto valueLabel = [](const std::string& key) {
    return "The value of the parameters dictionary by [" + key + "] key";
  };
  using Limits = std::numeric_limits<double>;

  const Parameters kinds{{"b", true}, {"d", -0.5}, {"i", -1}, {"t", "x"}, {"u", ~std::uint64_t{0}}};
  expectParameters(kinds, kinds, {});
  expectParameters({{"\n", AnyCodable()}}, {},
                   {error("CustomEvent", keyLabel + " is empty!"),
                    error("CustomEvent", valueLabel("") + " is nil!")});
  expectParameters(
      {{"i", -Limits::infinity()}, {"n", Limits::quiet_NaN()}}, {},
      {error("CustomEvent",
             valueLabel("i") +
                 " [-inf] is less than the min [-1.7976931348623157e+308] permitted value!"),
       error("CustomEvent", valueLabel("n") + " \n\tParameter cannot be NAN.")});
  // Of keys that become equal the later one stays, unless it is dropped.
  expectParameters({{"a\n", 1}, {"a\u200B", 2}}, {{"a", 2}}, {});
  expectParameters({{"a\n", 1}, {"a\u200B", ""}}, {{"a", 1}},
                   {error("CustomEvent", valueLabel("a") + " is empty!")});
}

/// What the rules tell of their own arguments is in their tables.
TEST(ValidatorRules, BuildOnChecksThatRefuseMoreThanTheyPassOn) {
  using Table = std::optional<std::map<std::string, int>>;
  const std::string beginning = "ERROR In the M method an error has occurred: \n\tA";
  const LogCapture log(PLRLogLevel::error);
  EXPECT_FALSE(Validator::notNullOrEmpty("M", "A", Table()));
  EXPECT_FALSE(Validator::validType("M", "A", AnyCodable::List{}));
  EXPECT_EQ(log.lines(),
            (std::vector{beginning + " is nil!",
                         beginning + " \n\tParameter must be of a valid type (Bool, Int, Double, "
                                     "String)."}));
  EXPECT_FALSE(Validator::equalStringLength("M", "A", std::nullopt, 3));
  EXPECT_EQ(log.lines().size(), 2U) << "a missing text fails in silence";
}

}  // namespace
}  // namespace pelorino
