#include "Decimal.h"

#include <boost/multiprecision/cpp_dec_float.hpp>
#include <exception>

namespace pelorino {
namespace {

using Number = boost::multiprecision::cpp_dec_float_50;

Number numberOf(const Decimal& decimal) {
  return Number(decimal.text());
}

}  // namespace

std::optional<Decimal> Decimal::parse(std::string_view text) {
  try {
    const Number number{std::string(text)};
    if (!boost::multiprecision::isfinite(number)) return std::nullopt;
    return Decimal(number.str());
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

bool Decimal::isNear(const Decimal& other) const {
  static const Number& limit = *new Number("0.0001");
  return abs(numberOf(*this) - numberOf(other)) < limit;
}

void encode(JsonWriter& json, const Decimal& value) {
  json.raw(value.text());
}

void decode(const JsonView& json, Decimal& value) {
  const auto parsed = Decimal::parse(json.text());
  if (!parsed) throwWrongType(json, "a number");
  value = *parsed;
}

}  // namespace pelorino
