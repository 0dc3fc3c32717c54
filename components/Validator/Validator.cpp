#include "Validator.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <concepts>
#include <utility>

#include "Logger.h"
#include "NumberText.h"
#include "Text.h"

namespace pelorino {
namespace {

/// Writes what is wrong with an argument. `makeRest` gives the words after the argument's label.
template <std::invocable MakeRest>
void logFault(std::string_view method, const Label& argument, const MakeRest& makeRest) {
  Logger::writeLog(PLRLogLevel::error, [&] {
    return fmt::format("In the {} method an error has occurred: \n\t{}{}{}{}", method,
                       argument.before, argument.variable, argument.after, makeRest());
  });
}

void logFault(std::string_view method, const Label& argument, std::string_view rest) {
  logFault(method, argument, [rest] { return rest; });
}

template <class Number>
std::string text(Number value) {
  std::string digits;
  appendNumber(digits, value);
  return digits;
}

template <class Number>
bool checkInterval(std::string_view method, const Label& argument, Number value, Number min,
                   Number max) {
  if (value < min) {
    logFault(method, argument, [&] {
      return fmt::format(" [{}] is less than the min [{}] permitted value!", text(value),
                         text(min));
    });
    return false;
  }
  if (value > max) {
    logFault(method, argument, [&] {
      return fmt::format(" [{}] is greater than the max [{}] permitted value!", text(value),
                         text(max));
    });
    return false;
  }
  return true;
}

/// Never destroyed: a block may still be running while the process exits.
std::optional<Validator::ExcludedOptions>& excluded() {
  static auto& shared = *new std::optional<Validator::ExcludedOptions>;
  return shared;
}

}  // namespace

bool Validator::notNullOrEmpty(std::string_view method, const Label& argument, bool isThere,
                               bool hasContent) {
  if (!isThere) {
    logFault(method, argument, " is nil!");
  } else if (!hasContent) {
    logFault(method, argument, " is empty!");
  }
  return hasContent;
}

bool Validator::inInterval(std::string_view method, const Label& argument, std::int64_t value,
                           std::int64_t min, std::int64_t max) {
  return checkInterval(method, argument, value, min, max);
}

bool Validator::inInterval(std::string_view method, const Label& argument, double value, double min,
                           double max) {
  return checkInterval(method, argument, value, min, max);
}

bool Validator::validateDoubleNAN(std::string_view method, const Label& argument, double value) {
  if (!std::isnan(value)) return true;
  logFault(method, argument, " \n\tParameter cannot be NAN.");
  return false;
}

bool Validator::equalStringLength(std::string_view method, const Label& argument,
                                  const std::optional<std::string>& value, std::size_t length) {
  if (!value) return false;
  if (characterCount(*value) == length) return true;
  logFault(method, argument, [&] {
    return fmt::format(" is invalid\n\tParameter [{}] length must be equal to [{}].", *value,
                       length);
  });
  return false;
}

bool Validator::validType(std::string_view method, const Label& argument, const AnyCodable& value) {
  switch (value.kind()) {
    case AnyCodable::Kind::boolean:
    case AnyCodable::Kind::integer:
    case AnyCodable::Kind::unsignedInteger:
    case AnyCodable::Kind::floating:
    case AnyCodable::Kind::text:
      return true;
    case AnyCodable::Kind::null:
      logFault(method, argument, " is nil!");
      return false;
    case AnyCodable::Kind::list:
    case AnyCodable::Kind::object:
      break;
  }
  logFault(method, argument, " \n\tParameter must be of a valid type (Bool, Int, Double, String).");
  return false;
}

bool Validator::isExcluded(const std::string& code, const std::optional<AnyCodable>& argument) {
  const auto& options = excludedOptions();
  if (!options) return false;
  const auto found = options->find(code);
  if (found == options->end()) return false;
  const auto& values = found->second;
  if (values.empty()) {
    Logger::writeLog(PLRLogLevel::info, [&] {
      return fmt::format("Event [{}] is excluded by project configuration", code);
    });
    return true;
  }
  if (!argument || std::find(values.begin(), values.end(), *argument) == values.end()) return false;
  Logger::writeLog(PLRLogLevel::info, [&] {
    return fmt::format("Event [{}] with [{}] argument is excluded by project configuration", code,
                       argument->description());
  });
  return true;
}

const std::optional<Validator::ExcludedOptions>& Validator::excludedOptions() {
  return excluded();
}

void Validator::setExcludedOptions(std::optional<ExcludedOptions> options) {
  excluded() = std::move(options);
}

}  // namespace pelorino
