#include "ValidatorRules.h"

#include <fmt/format.h>

#include <utility>

#include "Limits.h"
#include "Logger.h"
#include "Rule.h"

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

std::optional<ReplaceUserIdCall> ValidatorRules::validateReplaceUserId(ReplaceUserIdCall call) {
  Rule rule("replaceUserId");
  rule.text(userIdLabel, call.prevUserName, maximalUserId);
  rule.text(userIdLabel, call.userName, maximalUserId);
  return rule.verdict(std::move(call));
}

std::optional<std::int64_t> ValidatorRules::validateCurrentLevel(std::int64_t level) {
  Rule rule("SetCurrentLevel");
  rule.inInterval("The level argument value", level, levelInterval);
  return rule.verdict(level);
}

Resources ValidatorRules::validateResorces(std::string_view method, std::string_view resourcesName,
                                           const Resources& resources, std::size_t maximalKeyLength,
                                           Interval allowed) {
  const std::string keyRest = fmt::format("] key of the {}", resourcesName);
  const Label valueLabel("The value of the ", resourcesName, "");
  Resources kept;
  for (const auto& [rawKey, value] : resources) {
    std::string key = rawKey;
    Rule entry(method);
    entry.namedText("The [", keyRest, key, maximalKeyLength);
    if (entry.passed()) entry.inInterval(valueLabel, value, allowed);
    if (entry.passed()) kept.insert_or_assign(std::move(key), value);
  }
  return kept;
}

void ValidatorRules::notifyThatMethodExecutionWasCanceled(std::string_view method) {
  Logger::writeLog(PLRLogLevel::error,
                   [&] { return fmt::format("Execution of the {} method was canceled!", method); });
}

}  // namespace pelorino
