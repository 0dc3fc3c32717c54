#include "IdentityCalls.h"

#include <utility>

#include "Limits.h"
#include "Rule.h"
#include "ValidatorRules.h"

namespace pelorino {
namespace {

constexpr std::size_t maximalUserId = 64;
constexpr const char* userIdLabel = "The user id argument value";

}  // namespace

std::optional<std::string> ValidatorRules::validateInitializeKey(std::string key) {
  Rule rule("Initialize");
  rule.text("The application key argument value", key, 255);
  return rule.verdict(std::move(key));
}

std::optional<PLRAnalyticsConfigurationLocal> ValidatorRules::validateInitialize(
    std::optional<PLRAnalyticsConfigurationLocal> configuration) {
  if (!configuration) return std::nullopt;
  auto& [logLevel, userId, level, trackingAvailability] = *configuration;
  if (userId) userId = validateUserId("Initialize", *userId);
  if (level) {
    Rule rule("Initialize");
    rule.inInterval("The current level argument value", *level, levelInterval);
    if (!rule.passed()) level.reset();
  }
  return configuration;
}

std::optional<std::string> ValidatorRules::validateUserId(std::string_view method,
                                                          std::string userId) {
  if (userId.empty()) return userId;
  Rule rule(method);
  rule.text(userIdLabel, userId, maximalUserId);
  if (!rule.passed()) return std::nullopt;
  return userId;
}

std::optional<SetUserIdCall> SetUserIdCall::rule(SetUserIdCall call) {
  constexpr const char* method = "SetUserId";
  auto userId = ValidatorRules::validateUserId(method, std::move(call.userId));
  if (userId) return SetUserIdCall{*std::move(userId)};
  ValidatorRules::notifyThatMethodExecutionWasCanceled(method);
  return std::nullopt;
}

std::optional<ReplaceUserIdCall> ValidatorRules::validateReplaceUserId(ReplaceUserIdCall call) {
  Rule rule("replaceUserId");
  rule.text(userIdLabel, call.prevUserName, maximalUserId);
  rule.text(userIdLabel, call.userName, maximalUserId);
  return rule.verdict(std::move(call));
}

std::optional<SetCurrentLevelCall> ValidatorRules::validateCurrentLevel(SetCurrentLevelCall call) {
  Rule rule("SetCurrentLevel");
  rule.inInterval("The level argument value", call.level, levelInterval);
  return rule.verdict(call);
}

}  // namespace pelorino
