#include "PeopleValidatorRules.h"

#include <fmt/format.h>

#include <cstddef>

#include "Limits.h"
#include "Logger.h"
#include "Rule.h"

namespace pelorino {
namespace {

constexpr std::size_t maximalKey = 64;
constexpr std::size_t maximalText = 255;

/// Every integer is one that the card can hold.
void checkValue(Rule& rule, const Label& argument, PeopleValueType& value) {
  rule.validType(argument, value.toAnyCodable());
  if (const auto* number = value.get<double>()) {
    rule.inInterval(argument, *number, -finiteMaximum, finiteMaximum);
  } else if (auto text = value.toString()) {
    rule.text(argument, *text, maximalText);
    value = *std::move(text);
  }
}

}  // namespace

std::optional<PeopleValidatorRules::Property> PeopleValidatorRules::validateSet(
    std::string_view method, std::string key, PeopleValueType value) {
  Rule rule(method);
  rule.text("The key argument", key, maximalKey);
  checkValue(rule, "The value argument", value);
  return rule.verdict(Property(std::move(key), std::move(value)));
}

std::optional<std::string> PeopleValidatorRules::validateKey(std::string_view method,
                                                             std::string key) {
  Rule rule(method);
  rule.namedText("The [", "] key argument", key, maximalKey);
  return rule.verdict(std::move(key));
}

std::optional<std::vector<std::string>> PeopleValidatorRules::validateUnset(
    std::string_view method, std::vector<std::string> keys) {
  std::erase_if(keys, [method](std::string& key) {
    Rule entry(method);
    entry.namedText("The [", "] key of the keys array", key, maximalKey);
    return !entry.passed();
  });
  if (keys.empty()) return std::nullopt;
  return keys;
}

bool PeopleValidatorRules::validateReservedValueType(PeopleReservedKeys key,
                                                     const PeopleValueType& value) {
  if (hasRequiredType(key, value)) return true;
  Logger::writeLog(PLRLogLevel::error, [&] {
    return fmt::format("Invalid value! The [{}] value of the reserved key [{}] must be {}",
                       value.description(), rawValue(key), requiredType(key));
  });
  return false;
}

}  // namespace pelorino
