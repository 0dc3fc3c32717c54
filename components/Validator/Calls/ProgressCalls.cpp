#include "ProgressCalls.h"

#include <limits>
#include <utility>

#include "Limits.h"
#include "Rule.h"
#include "ValidatorRules.h"

namespace pelorino {
namespace {

constexpr Interval anyInteger{std::numeric_limits<std::int64_t>::min(),
                              std::numeric_limits<std::int64_t>::max()};
constexpr Interval anyPositive{1, anyInteger.max};

constexpr const char* eventNameLabel = "The event name argument value";

}  // namespace

std::optional<LevelUpCall> ValidatorRules::validateLevelUp(LevelUpCall call) {
  Rule rule("LevelUp");
  rule.inInterval("The level argument value", call.level, levelInterval);
  call.balances = validateResorces(rule.method(), "balances dictionary", call.balances,
                                   maximalResourceKey, anyInteger);
  return rule.verdict(std::move(call));
}

std::optional<CurrentBalanceCall> ValidatorRules::validateCurrentBalance(CurrentBalanceCall call) {
  Rule rule("CurrentBalance");
  call.balance = validateResorces(rule.method(), "balances dictionary", call.balance,
                                  maximalResourceKey, anyInteger);
  rule.notEmpty("The balance parameter value", call.balance);
  return rule.verdict(std::move(call));
}

std::optional<TutorialCall> ValidatorRules::validateTutorial(TutorialCall call) {
  Rule rule("Tutorial");
  rule.inInterval("The step argument value", call.step, {-2, integerMaximum});
  return rule.verdict(call);
}

std::optional<StartProgressionEventCall> ValidatorRules::validateStartProgressionEvent(
    StartProgressionEventCall call) {
  Rule rule("StartProgressionEvent");
  auto& [difficulty, source] = call.parameters;
  rule.text(eventNameLabel, call.eventName, 40);
  rule.bound("The source parameter value", source, 40);
  if (difficulty) rule.inInterval("The difficulty parameter value", *difficulty, zeroOrMore);
  return rule.verdict(std::move(call));
}

std::optional<FinishProgressionEventCall> ValidatorRules::validateFinishProgressionEvent(
    FinishProgressionEventCall call) {
  Rule rule("FinishProgressionEvent");
  auto& [success, duration, spent, earned] = call.parameters;
  rule.text(eventNameLabel, call.eventName, 40);
  rule.inInterval("The duration parameter value", duration, zeroOrMore);
  spent =
      validateResorces(rule.method(), "spent dictionary", spent, maximalResourceKey, anyPositive);
  earned =
      validateResorces(rule.method(), "earned dictionary", earned, maximalResourceKey, anyPositive);
  return rule.verdict(std::move(call));
}

}  // namespace pelorino
