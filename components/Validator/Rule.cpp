#include "Rule.h"

#include <utility>

#include "Bounder.h"
#include "Logger.h"
#include "Text.h"
#include "ValidatorRules.h"

namespace pelorino {

void Rule::bound(const Label& argument, std::string& value, std::size_t maximum) const {
  value = Bounder::maxStringLength(method_, argument, cleaned(std::move(value)), maximum);
}

void Rule::bound(const Label& argument, std::optional<std::string>& value,
                 std::size_t maximum) const {
  if (value) bound(argument, *value, maximum);
}

void Rule::text(const Label& argument, std::string& value, std::size_t maximum) {
  bound(argument, value, maximum);
  notEmpty(argument, value);
}

void Rule::namedText(std::string_view opening, std::string_view closing, std::string& value,
                     std::size_t maximum) {
  value = cleaned(std::move(value));
  const std::string name = value;
  const Label argument(opening, name, closing);
  value = Bounder::maxStringLength(method_, argument, std::move(value), maximum);
  notEmpty(argument, value);
}

void Rule::inInterval(const Label& argument, std::int64_t value, Interval allowed) {
  passed_ &= Validator::inInterval(method_, argument, value, allowed.min, allowed.max);
}

void Rule::inInterval(const Label& argument, double value, double min, double max) {
  passed_ &= Validator::validateDoubleNAN(method_, argument, value);
  passed_ &= Validator::inInterval(method_, argument, value, min, max);
}

void Rule::equalLength(const Label& argument, const std::string& value, std::size_t length) {
  passed_ &= Validator::equalStringLength(method_, argument, cleaned(value), length);
}

void Rule::validType(const Label& argument, const AnyCodable& value) {
  passed_ &= Validator::validType(method_, argument, value);
}

void Rule::fail(std::string_view message) {
  Logger::writeLog(PLRLogLevel::error, message);
  passed_ = false;
}

void Rule::cancel() const {
  ValidatorRules::notifyThatMethodExecutionWasCanceled(method_);
}

}  // namespace pelorino
