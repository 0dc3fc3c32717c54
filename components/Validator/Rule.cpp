#include "Rule.h"

#include <utility>

#include "Bounder.h"
#include "Text.h"
#include "Validator.h"
#include "ValidatorRules.h"

namespace pelorino {

std::string Rule::text(const Label& argument, std::string value, std::size_t maximum) {
  value = cut(argument, cleaned(std::move(value)), maximum);
  notEmpty(argument, value);
  return value;
}

std::string Rule::cut(const Label& argument, std::string value, std::size_t maximum) const {
  return Bounder::maxStringLength(method_, argument, std::move(value), maximum);
}

void Rule::notEmpty(const Label& argument, const std::string& value) {
  passed_ &= Validator::notNullOrEmpty(method_, argument, value);
}

void Rule::inInterval(const Label& argument, std::int64_t value, std::int64_t min,
                      std::int64_t max) {
  passed_ &= Validator::inInterval(method_, argument, value, min, max);
}

void Rule::inInterval(const Label& argument, double value, double min, double max) {
  passed_ &= Validator::inInterval(method_, argument, value, min, max);
  passed_ &= Validator::validateDoubleNAN(method_, argument, value);
}

void Rule::validType(const Label& argument, const AnyCodable& value) {
  passed_ &= Validator::validType(method_, argument, value);
}

bool Rule::rejects() const {
  if (!passed_) ValidatorRules::notifyThatMethodExecutionWasCanceled(method_);
  return !passed_;
}

}  // namespace pelorino
