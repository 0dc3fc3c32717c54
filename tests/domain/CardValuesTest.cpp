#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "PeopleValueType.h"
#include "SubscriptionProduct.h"

namespace pelorino {
namespace {

TEST(PeopleValueType, ConvertsNumbersAndNothingElse) {
  struct Case {
    PeopleValueType value;
    double asDouble;
    std::int64_t asInt;
  };
  const Case cases[] = {
      {7, 7.0, 7},
      {-2.9, -2.9, -2},
      {1e300, 1e300, std::numeric_limits<std::int64_t>::max()},
      {-1e300, -1e300, std::numeric_limits<std::int64_t>::min()},
      {"8", 0.0, 0},
      {true, 0.0, 0},
      {PLRGender::Female, 0.0, 0},
      {{}, 0.0, 0},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(c.value.toDouble(), c.asDouble);
    EXPECT_EQ(c.value.toInt(), c.asInt);
  }
  EXPECT_EQ(PeopleValueType(std::nan("")).toInt(), 0);
  EXPECT_EQ(PeopleValueType("8").toString(), "8");
  EXPECT_EQ(PeopleValueType(8).toString(), std::nullopt);
}

TEST(PeopleValueType, ValuesOfDifferentTypesDiffer) {
  const PeopleValueType values[] = {1, 1.0, true, "1", PLRGender::Male, {}};
  for (const auto& left : values) {
    for (const auto& right : values) EXPECT_EQ(left.isEqual(right), &left == &right);
  }
}

TEST(PeopleValueType, PropertiesThatJsonCannotHoldAreNoJson) {
  EXPECT_EQ(peopleJson({{"g", PLRGender::Male}, {"n", {}}}), R"({"g":1,"n":null})");
  EXPECT_EQ(peopleJson({{"bad", std::numeric_limits<double>::infinity()}}), "Not a valid JSON");
}

SubscriptionProduct product(const char* price) {
  return {.productId = "p",
          .price = Decimal::parse(price).value(),
          .regionCode = "US",
          .currencyCode = "USD",
          .introductoryPrice = {},
          .discounts = {}};
}

TEST(SubscriptionProduct, EqualMeansNothingNewToReport) {
  using Discounts = std::map<std::string, Decimal>;
  const Decimal one = Decimal::parse("1").value();
  struct Case {
    const char* label;
    void (*change)(SubscriptionProduct&);
    bool isEqual;
  };
  const Case cases[] = {
      {"region", [](auto& p) { p.regionCode = "DE"; }, true},
      {"id", [](auto& p) { p.productId = "q"; }, false},
      {"currency", [](auto& p) { p.currencyCode = "EUR"; }, false},
      {"price a little more", [](auto& p) { p.price = Decimal::parse("4.99005").value(); }, true},
      {"price just enough more", [](auto& p) { p.price = Decimal::parse("4.9901").value(); },
       false},
      {"no introductory price is 0", [](auto& p) { p.introductoryPrice = Decimal(); }, true},
      {"introductory price", [](auto& p) { p.introductoryPrice = p.price; }, false},
      {"no discounts", [](auto& p) { p.discounts.reset(); }, true},
      {"more discounts", [](auto& p) { p.discounts->emplace("e", Decimal()); }, true},
      {"another discount",
       [](auto& p) {
         p.discounts = Discounts{{"e", Decimal()}};
       },
       false},
      {"another price of a discount", [](auto& p) { p.discounts->at("d") = Decimal(); }, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    SubscriptionProduct left = product("4.99");
    left.discounts = Discounts{{"d", one}};
    SubscriptionProduct right = left;
    c.change(right);
    EXPECT_EQ(left == right, c.isEqual);
    EXPECT_EQ(right == left, c.isEqual);
  }
}

TEST(Decimal, ParsesFiniteNumbersOnly) {
  for (const char* text : {"", "x", "1x", "nan", "inf", "\"1\"", "null"}) {
    EXPECT_FALSE(Decimal::parse(text)) << text;
  }
  EXPECT_EQ(Decimal::parse("-12.50")->text(), "-12.5");
}

}  // namespace
}  // namespace pelorino
