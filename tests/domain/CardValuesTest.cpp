#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "PeopleValueType.h"
#include "Subscriptions.h"

namespace pelorino {
namespace {

TEST(PeopleValueType, ConvertsNumbersAndNothingElse) {
  const auto expectNumber = [](const PeopleValueType& value, double asDouble, std::int64_t asInt) {
    EXPECT_EQ(value.toDouble(), asDouble);
    EXPECT_EQ(value.toInt(), asInt);
  };
  expectNumber(-2.9, -2.9, -2);
  expectNumber(1e300, 1e300, std::numeric_limits<std::int64_t>::max());
  expectNumber(-1e300, -1e300, std::numeric_limits<std::int64_t>::min());
  expectNumber("8", 0.0, 0);
  EXPECT_EQ(PeopleValueType(std::nan("")).toInt(), 0);
}

TEST(PeopleValueType, PropertiesThatJsonCannotHoldAreNoJson) {
  EXPECT_EQ(peopleJson({{"g", PLRGender::Male}, {"n", {}}}), R"({"g":1,"n":null})");
  EXPECT_EQ(peopleJson({{"bad", std::numeric_limits<double>::infinity()}}), "Not a valid JSON");
}

TEST(SubscriptionProduct, EqualMeansNothingNewToReport) {
  const auto expectEqual = [](bool isEqual, const auto& change) {
    SubscriptionProduct left{.productId = "p",
                             .price = Decimal::parse("4.99").value(),
                             .regionCode = "US",
                             .currencyCode = "USD",
                             .discounts = {{{"d", Decimal::parse("1").value()}}}};
    SubscriptionProduct right = left;
    change(right);
    EXPECT_EQ(left == right, isEqual);
    EXPECT_EQ(right == left, isEqual);
  };
  expectEqual(true, [](auto& p) { p.regionCode = "DE"; });
  expectEqual(false, [](auto& p) { p.currencyCode = "EUR"; });
  expectEqual(true, [](auto& p) { p.introductoryPrice = Decimal(); });
  expectEqual(false, [](auto& p) { p.introductoryPrice = p.price; });
  expectEqual(true, [](auto& p) { p.discounts.reset(); });
  expectEqual(true, [](auto& p) { p.discounts->emplace("e", Decimal()); });
  expectEqual(false, [](auto& p) { p.discounts = {{"e", Decimal()}}; });
  expectEqual(false, [](auto& p) { p.discounts->at("d") = Decimal(); });
}

TEST(Decimal, ParsesFiniteNumbersOnly) {
  for (const char* text : {"", "x", "1x", "nan", "inf", "\"1\"", "null"}) {
    EXPECT_FALSE(Decimal::parse(text)) << text;
  }
  EXPECT_EQ(Decimal::parse("-12.50")->text(), "-12.5");
}

}  // namespace
}  // namespace pelorino
