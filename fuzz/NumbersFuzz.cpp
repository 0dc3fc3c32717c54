// Numbers and what stands beside prices: doubles and integers as text and back, decimals, locales.

#include <cmath>
#include <cstring>

#include "Decimal.h"
#include "Fuzz.h"
#include "JsonHelpers.h"
#include "LocaleIdentifier.h"
#include "NumberText.h"
#include "StoreValues.h"

namespace pelorino::fuzz {
namespace {

template <class Number>
std::string written(Number number) {
  std::string text;
  appendNumber(text, number);
  return text;
}

void checkInteger(std::int64_t number) {
  FUZZ_REQUIRE(decodeJson<std::int64_t>(written(number)) == number);
  const auto large = static_cast<std::uint64_t>(number);
  const AnyCodable read = decodeJson<AnyCodable>(written(large));
  FUZZ_REQUIRE(number >= 0 ? *read.integer() == number : *read.unsignedInteger() == large);
}

void checkDouble(double number) {
  if (!std::isfinite(number)) return;
  const std::string text = written(number);
  FUZZ_REQUIRE(text.find_first_of(".e") != std::string::npos);
  FUZZ_REQUIRE(std::strtod(text.c_str(), nullptr) == number);
  FUZZ_REQUIRE(decodeJson<double>(text) == number);
  // No text that is shorter reads back.
  FUZZ_REQUIRE(text.size() <= 26);
}

/// A decimal is read with 50 digits and lands on the nearest double or on a neighbour of it.
bool isSame(double left, double right) {
  return left == right || std::nextafter(left, right) == right;
}

void checkDecimal(std::string_view text) {
  const auto decimal = Decimal::parse(text);
  if (!decimal) return;
  const auto again = Decimal::parse(decimal->text());
  FUZZ_REQUIRE(again && again->text() == decimal->text());
  FUZZ_REQUIRE(decimal->isNear(*decimal));
  FUZZ_REQUIRE(decodeJson<Decimal>(encodeJson(*decimal)).text() == decimal->text());
  FUZZ_REQUIRE(isSame(decodeJson<double>(decimal->text()), decodeJson<double>(text)));
}

void checkPrice(double number) {
  SKProduct product;
  product.price = number;
  const Decimal price = subscriptionProductOf(product, true).price;
  FUZZ_REQUIRE(isSame(decodeJson<double>(price.text()), std::isfinite(number) ? number : 0.0));
}

bool isUpperCaseOrDigit(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

void checkLocale(std::string_view identifier) {
  for (const auto& [code, shortest] : {std::pair(regionCodeOf(identifier), std::size_t{2}),
                                       std::pair(currencyCodeOf(identifier), std::size_t{3})}) {
    if (!code) continue;
    FUZZ_REQUIRE(code->size() >= shortest && code->size() <= 3);
    for (const char c : *code) FUZZ_REQUIRE(isUpperCaseOrDigit(c));
  }
}

}  // namespace
}  // namespace pelorino::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pelorino;
  fuzz::checkDecimal(fuzz::textOf(data, size));
  fuzz::checkLocale(fuzz::textOf(data, size));
  if (size >= sizeof(double)) {
    double number = 0;
    std::int64_t integer = 0;
    std::memcpy(&number, data, sizeof number);
    std::memcpy(&integer, data, sizeof integer);
    fuzz::checkDouble(number);
    fuzz::checkPrice(number);
    fuzz::checkInteger(integer);
  }
  return 0;
}
