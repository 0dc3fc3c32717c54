#if defined(__GNUC__) && !defined(__clang__)
// With optimisation, g++ 12 wrongly reports an overlapping copy inside the number class. It blames
// the headers below, so the warning is switched off before them.
#pragma GCC diagnostic ignored "-Wrestrict"
#endif

#include "Decimal.h"

#include <boost/multiprecision/cpp_dec_float.hpp>
#include <cctype>
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
    // Only a JSON number is accepted: the number class alone would ignore what follows a number.
    const std::string_view json = JsonView(text).text();
    if (json.front() != '-' && std::isdigit(static_cast<unsigned char>(json.front())) == 0) {
      return std::nullopt;
    }
    const Number number{std::string(json)};
    if (!boost::multiprecision::isfinite(number)) return std::nullopt;
    return Decimal(number.str());
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

bool Decimal::isNear(const Decimal& other) const {
  // Never destroyed: the incomeQueue may still compare while the process exits.
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
