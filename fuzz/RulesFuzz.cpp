// The rules for arguments: whatever a host hands over, what comes out obeys the limits, and passes
// the same rule again unchanged.

#include <boost/pfr.hpp>
#include <cmath>
#include <optional>
#include <type_traits>
#include <vector>

#include "EventCalls.h"
#include "Fuzz.h"
#include "IdentityCalls.h"
#include "Limits.h"
#include "PaymentCalls.h"
#include "PeopleValidatorRules.h"
#include "ProgressCalls.h"
#include "Text.h"

namespace pelorino::fuzz {
namespace {

/// A host's text as the public classes hand it on.
std::string textFrom(FuzzedDataProvider& input) {
  return repairUtf8(input.ConsumeRandomLengthString(400));
}

Resources resourcesFrom(FuzzedDataProvider& input) {
  Resources resources;
  for (int i = input.ConsumeIntegralInRange(0, 4); i > 0; --i) {
    std::string name = textFrom(input);
    resources.insert_or_assign(std::move(name), input.ConsumeIntegral<std::int64_t>());
  }
  return resources;
}

AnyCodable valueFrom(FuzzedDataProvider& input) {
  switch (input.ConsumeIntegralInRange(0, 6)) {
    case 0:
      return input.ConsumeBool();
    case 1:
      return input.ConsumeIntegral<std::int64_t>();
    case 2:
      return input.ConsumeIntegral<std::uint64_t>();
    case 3:
      return input.ConsumeFloatingPoint<double>();
    case 4:
      return nullptr;
    case 5:
      return AnyCodable::List{AnyCodable(1)};
    default:
      return textFrom(input);
  }
}

/// Field by field, for the plain records of calls.
template <class Value>
bool isSame(const Value& left, const Value& right) {
  if constexpr (std::is_aggregate_v<Value>) {
    bool same = true;
    boost::pfr::for_each_field(left, [&](const auto& field, auto index) {
      same = same && isSame(field, boost::pfr::get<index>(right));
    });
    return same;
  } else {
    return left == right;
  }
}

void within(const std::string& text, std::size_t maximum) {
  FUZZ_REQUIRE(repairUtf8(text) == text);
  FUZZ_REQUIRE(cleaned(text) == text);
  FUZZ_REQUIRE(characterCount(text) <= maximum);
}
void within(const std::optional<std::string>& text, std::size_t maximum) {
  if (text) within(*text, maximum);
}
void filled(const std::string& text, std::size_t maximum) {
  within(text, maximum);
  FUZZ_REQUIRE(!text.empty());
}
void inside(std::int64_t value, Interval allowed) {
  FUZZ_REQUIRE(value >= allowed.min && value <= allowed.max);
}
void inside(const Resources& resources, std::int64_t min, std::int64_t max) {
  for (const auto& [name, amount] : resources) {
    filled(name, maximalResourceKey);
    inside(amount, {min, max});
  }
}

template <class Rule, class Call, class Obeys>
void check(Rule rule, Call call, Obeys obeys) {
  const auto once = rule(std::move(call));
  if (!once) return;
  obeys(*once);
  const auto twice = rule(*once);
  FUZZ_REQUIRE(twice && isSame(*twice, *once));
}

namespace Rules = ValidatorRules;
constexpr std::int64_t lowest = INT64_MIN;
constexpr std::int64_t highest = INT64_MAX;

void checkIdentity(FuzzedDataProvider& input) {
  check(Rules::validateInitializeKey, textFrom(input),
        [](const std::string& key) { filled(key, 255); });
  check(SetUserIdCall::rule, SetUserIdCall{textFrom(input)},
        [](const SetUserIdCall& call) { within(call.userId, 64); });
  check(Rules::validateReplaceUserId, ReplaceUserIdCall{textFrom(input), textFrom(input)},
        [](const ReplaceUserIdCall& call) {
          filled(call.prevUserName, 64);
          filled(call.userName, 64);
        });
  check(Rules::validateCurrentLevel, SetCurrentLevelCall{input.ConsumeIntegral<std::int64_t>()},
        [](const SetCurrentLevelCall& call) { inside(call.level, levelInterval); });
  check(Rules::validateInitialize,
        std::optional(PLRAnalyticsConfigurationLocal{
            .userId = textFrom(input), .level = input.ConsumeIntegral<std::int64_t>()}),
        [](const PLRAnalyticsConfigurationLocal& configuration) {
          within(configuration.userId, 64);
          if (configuration.level) inside(*configuration.level, levelInterval);
        });
}

void checkProgress(FuzzedDataProvider& input) {
  check(Rules::validateLevelUp,
        LevelUpCall{input.ConsumeIntegral<std::int64_t>(), resourcesFrom(input)},
        [](const LevelUpCall& call) {
          inside(call.level, levelInterval);
          inside(call.balances, lowest, highest);
        });
  check(Rules::validateCurrentBalance, CurrentBalanceCall{resourcesFrom(input)},
        [](const CurrentBalanceCall& call) {
          FUZZ_REQUIRE(!call.balance.empty());
          inside(call.balance, lowest, highest);
        });
  check(Rules::validateTutorial, TutorialCall{input.ConsumeIntegral<std::int64_t>()},
        [](const TutorialCall& call) {
          inside(call.step, {-2, integerMaximum});
        });
  StartProgressionEventCall start{.eventName = textFrom(input), .parameters = {}};
  if (input.ConsumeBool()) start.parameters.difficulty = input.ConsumeIntegral<std::int64_t>();
  if (input.ConsumeBool()) start.parameters.source = textFrom(input);
  check(Rules::validateStartProgressionEvent, start, [](const StartProgressionEventCall& call) {
    filled(call.eventName, 40);
    within(call.parameters.source, 40);
    if (call.parameters.difficulty) inside(*call.parameters.difficulty, zeroOrMore);
  });
  check(Rules::validateFinishProgressionEvent,
        FinishProgressionEventCall{textFrom(input),
                                   {.duration = input.ConsumeIntegral<std::int64_t>(),
                                    .spent = resourcesFrom(input),
                                    .earned = resourcesFrom(input)}},
        [](const FinishProgressionEventCall& call) {
          filled(call.eventName, 40);
          inside(call.parameters.duration, zeroOrMore);
          inside(call.parameters.spent, 1, highest);
          inside(call.parameters.earned, 1, highest);
        });
}

void checkPayments(FuzzedDataProvider& input) {
  check(Rules::validateCurrencyAccrual,
        CurrencyAccrualCall{textFrom(input), input.ConsumeIntegral<std::int64_t>(), textFrom(input),
                            PLRAccrualType::bought},
        [](const CurrencyAccrualCall& call) {
          filled(call.currencyName, 24);
          filled(call.source, 32);
          inside(call.currencyAmount, amountInterval);
        });
  check(Rules::validateVirtualCurrencyPayment,
        VirtualCurrencyPaymentCall{textFrom(input), textFrom(input),
                                   input.ConsumeIntegral<std::int64_t>(), resourcesFrom(input)},
        [](const VirtualCurrencyPaymentCall& call) {
          filled(call.purchaseId, 32);
          filled(call.purchaseType, 96);
          inside(call.purchaseAmount, amountInterval);
          FUZZ_REQUIRE(!call.resources.empty());
          inside(call.resources, amountInterval.min, amountInterval.max);
        });
  check(Rules::validateRealCurrencyPayment,
        RealCurrencyPaymentCall{textFrom(input), input.ConsumeFloatingPoint<double>(),
                                textFrom(input), textFrom(input)},
        [](const RealCurrencyPaymentCall& call) {
          filled(call.orderId, 65);
          filled(call.productId, 255);
          FUZZ_REQUIRE(std::isfinite(call.price));
          // The currency goes on as the host wrote it.
          FUZZ_REQUIRE(characterCount(cleaned(call.currencyCode)) == 3);
        });
  check(Rules::validateSubscriptionPayment,
        EngineSubscriptionPaymentCall{textFrom(input), textFrom(input)},
        [](const EngineSubscriptionPaymentCall& call) {
          filled(call.productId, 255);
          filled(call.transactionId, 255);
        });
}

void checkParameter(const std::string& key, const AnyCodable& value) {
  filled(key, 32);
  FUZZ_REQUIRE(!value.isNull() && !value.list() && !value.object());
  if (const auto* text = value.text()) filled(*text, 255);
  if (const auto* number = value.floating()) FUZZ_REQUIRE(std::isfinite(*number));
}

void checkEvents(FuzzedDataProvider& input) {
  CustomEventCall custom{.name = textFrom(input), .params = {}};
  for (int i = input.ConsumeIntegralInRange(0, 4); i > 0; --i) {
    std::string key = textFrom(input);
    custom.params.emplace_back(std::move(key), valueFrom(input));
  }
  check(Rules::validateCustomEvent, custom, [](const CustomEventCall& call) {
    filled(call.name, 72);
    for (const auto& [key, value] : call.params) checkParameter(key, value);
  });
  check(Rules::validateSocialNetworkConnect, SocialNetworkConnectCall{textFrom(input)},
        [](const SocialNetworkConnectCall& call) { filled(call.name, 24); });
  check(Rules::validateSocialNetworkPost, SocialNetworkPostCall{textFrom(input), textFrom(input)},
        [](const SocialNetworkPostCall& call) {
          filled(call.name, 24);
          filled(call.reason, 32);
        });
  check(Rules::validateReferrer,
        ReferrerCall{{{textFrom(input), textFrom(input)}, {textFrom(input), textFrom(input)}}},
        [](const ReferrerCall& call) {
          FUZZ_REQUIRE(!call.utmData.empty());
          for (const auto& [property, value] : call.utmData) filled(value, 255);
        });
  AdImpressionCall impression{textFrom(input), input.ConsumeFloatingPoint<double>(), {}, {}};
  if (input.ConsumeBool()) impression.placement = textFrom(input);
  if (input.ConsumeBool()) impression.unit = textFrom(input);
  check(Rules::validateAdImpression, impression, [](const AdImpressionCall& call) {
    filled(call.network, 100);
    FUZZ_REQUIRE(std::isfinite(call.revenue) && call.revenue >= 0);
    if (call.placement) filled(*call.placement, 100);
    if (call.unit) filled(*call.unit, 100);
  });
}

void checkCard(FuzzedDataProvider& input) {
  const std::string key = textFrom(input);
  const auto value = PeopleValueType::from(valueFrom(input)).value_or(PeopleValueType());
  const auto set = PeopleValidatorRules::validateSet("set", key, value);
  if (set) {
    filled(set->first, 64);
    FUZZ_REQUIRE(!set->second.isNull());
    if (const auto text = set->second.toString()) filled(*text, 255);
    if (const auto* number = set->second.get<double>()) FUZZ_REQUIRE(std::isfinite(*number));
    const auto again = PeopleValidatorRules::validateSet("set", set->first, set->second);
    FUZZ_REQUIRE(again && again->first == set->first && again->second.isEqual(set->second));
    FUZZ_REQUIRE(normalized(normalized(key)) == normalized(key));
  }
  check([](std::string one) { return PeopleValidatorRules::validateKey("unset", std::move(one)); },
        key, [](const std::string& one) { filled(one, 64); });
  check(
      [](std::vector<std::string> keys) {
        return PeopleValidatorRules::validateUnset("unset", std::move(keys));
      },
      std::vector{key, textFrom(input), textFrom(input)},
      [](const std::vector<std::string>& keys) {
        FUZZ_REQUIRE(!keys.empty());
        for (const std::string& one : keys) filled(one, 64);
      });
}

constexpr void (*groups[])(FuzzedDataProvider&) = {checkIdentity, checkProgress, checkPayments,
                                                   checkEvents, checkCard};

}  // namespace
}  // namespace pelorino::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pelorino;
  fuzz::makeAllLogLines();
  FuzzedDataProvider input(data, size);
  fuzz::groups[input.ConsumeIntegralInRange<std::size_t>(0, std::size(fuzz::groups) - 1)](input);
  return 0;
}
