#include "ValidatorRules.h"

#include <fmt/format.h>

#include <cstdint>
#include <limits>
#include <utility>

#include "Logger.h"
#include "Rule.h"
#include "Text.h"
#include "Validator.h"

namespace pelorino {
namespace {

constexpr std::size_t maximalKey = 255;
constexpr std::size_t maximalUserId = 64;
constexpr std::size_t maximalEventName = 72;
constexpr std::size_t maximalParameterKey = 32;
constexpr std::size_t maximalParameterText = 255;
constexpr std::int64_t minimalLevel = 1;
constexpr std::int64_t maximalLevel = std::numeric_limits<std::int32_t>::max() - 1;
constexpr double finiteMaximum = std::numeric_limits<double>::max();

/// The value as it is stored. What is neither a number with a fraction nor a text needs no repair.
AnyCodable checkParameter(Rule& entry, const Label& argument, const AnyCodable& value) {
  if (const double* number = value.floating()) {
    entry.inInterval(argument, *number, -finiteMaximum, finiteMaximum);
  } else if (const std::string* text = value.text()) {
    return entry.text(argument, *text, maximalParameterText);
  }
  return value;
}

ValidatorRules::Parameters checkParameters(std::string_view method,
                                           const ValidatorRules::Parameters& params) {
  const Label keyLabel = "The key of the parameters dictionary";
  ValidatorRules::Parameters kept;
  for (const auto& [rawKey, value] : params) {
    const std::string key = cleaned(rawKey);
    const Label valueLabel("The value of the parameters dictionary by [", key, "] key");
    Rule entry(method);
    entry.notEmpty(keyLabel, key);
    entry.validType(valueLabel, value);
    if (!entry.passed()) continue;
    std::string cutKey = entry.cut(keyLabel, key, maximalParameterKey);
    AnyCodable checked = checkParameter(entry, valueLabel, value);
    if (entry.passed()) kept.insert_or_assign(std::move(cutKey), std::move(checked));
  }
  return kept;
}

}  // namespace

std::optional<std::string> ValidatorRules::validateInitializeKey(std::string key) {
  Rule rule("Initialize");
  key = rule.text("The application key argument value", std::move(key), maximalKey);
  if (rule.rejects()) return std::nullopt;
  return key;
}

std::optional<PLRAnalyticsConfigurationLocal> ValidatorRules::validateInitialize(
    std::optional<PLRAnalyticsConfigurationLocal> configuration) {
  if (!configuration) return std::nullopt;
  auto& [logLevel, userId, level, trackingAvailability] = *configuration;
  if (userId) userId = validateUserId("Initialize", *userId);
  if (level && !Validator::inInterval("Initialize", "The current level argument value", *level,
                                      minimalLevel, maximalLevel)) {
    level.reset();
  }
  return configuration;
}

std::optional<std::string> ValidatorRules::validateUserId(std::string_view method,
                                                          std::string userId) {
  if (userId.empty()) return userId;
  Rule rule(method);
  userId = rule.text("The user id argument value", std::move(userId), maximalUserId);
  if (!rule.passed()) return std::nullopt;
  return userId;
}

bool ValidatorRules::validateLevel(std::string_view method, std::int64_t level) {
  Rule rule(method);
  rule.inInterval("The level argument value", level, minimalLevel, maximalLevel);
  return !rule.rejects();
}

std::optional<ValidatorRules::CustomEvent> ValidatorRules::validateCustomEvent(
    std::string name, const Parameters& params) {
  Rule rule("CustomEvent");
  const Label nameLabel = "The custom event name";
  name = rule.cut(nameLabel, cleaned(std::move(name)), maximalEventName);
  Parameters kept = checkParameters("CustomEvent", params);
  rule.notEmpty(nameLabel, name);
  if (rule.rejects()) return std::nullopt;
  return CustomEvent{std::move(name), std::move(kept)};
}

void ValidatorRules::notifyThatMethodExecutionWasCanceled(std::string_view method) {
  Logger::writeLog(PLRLogLevel::error,
                   [&] { return fmt::format("Execution of the {} method was canceled!", method); });
}

}  // namespace pelorino
