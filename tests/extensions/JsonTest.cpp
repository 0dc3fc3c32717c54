#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "AnyCodable.h"
#include "JsonHelpers.h"
#include "LogCapture.h"

namespace pelorino {
namespace {

using Kind = AnyCodable::Kind;

std::string rewritten(std::string_view text) {
  return encodeJson(JsonView(text).value());
}

TEST(AnyCodable, ReadsEachNumberAsTheKindThatHoldsIt) {
  const auto expectNumber = [](const char* text, Kind kind, const std::string& written) {
    SCOPED_TRACE(text);
    EXPECT_EQ(JsonView(text).value().kind(), kind);
    EXPECT_EQ(rewritten(text), written);
  };
  expectNumber("2.0", Kind::integer, "2");
  expectNumber("-0.0", Kind::integer, "0");
  expectNumber("9223372036854775807", Kind::integer, "9223372036854775807");
  expectNumber("-9223372036854775808", Kind::integer, "-9223372036854775808");
  expectNumber("9223372036854775808", Kind::unsignedInteger, "9223372036854775808");
  expectNumber("18446744073709551615", Kind::unsignedInteger, "18446744073709551615");
  expectNumber("18446744073709551616", Kind::floating, "1.8446744073709552e+19");
  expectNumber("1e-400", Kind::integer, "0");
  expectNumber("0e900", Kind::integer, "0");
  expectNumber(("0." + std::string(400, '0') + "25e400").c_str(), Kind::floating, "0.25");
}

TEST(AnyCodable, GoesThroughJsonWithoutLoss) {
  for (const char* text :
       {"[1,null,\"a\",true,[],{}]", "{\"a\":{\"b\":[{\"c\":1.5}]},\"d\":[]}",
        "{\"\":\"\\\"\\\\\\b\\f\\n\\r\\t\\u0001\\u0000\"}", "\"\u00e9\u20ac\U0001F600\""}) {
    EXPECT_EQ(rewritten(text), text);
  }
  EXPECT_EQ(rewritten("\"\\ud83d\\ude00\\/\\u00e9\""), "\"\U0001F600/\u00e9\"");
}

TEST(AnyCodable, IsEqualWithinOneKindOnly) {
  const AnyCodable::Object object{{"a", 1}};
  const AnyCodable values[] = {nullptr, true, 1, std::uint64_t{1}, 1.0, "1", AnyCodable::List{1},
                               object};
  for (const AnyCodable& left : values) {
    for (const AnyCodable& right : values) EXPECT_EQ(left == right, &left == &right);
  }
  // What came out of a text equals nothing, unless it is empty.
  EXPECT_NE(JsonView("[1]").value(), JsonView("[1]").value());
  EXPECT_NE(JsonView("{\"a\":1}").value(), AnyCodable(object));
  EXPECT_EQ(JsonView("[]").value(), AnyCodable(AnyCodable::List{}));
  EXPECT_NE(JsonView("[]").value(), JsonView("{}").value());
  EXPECT_EQ(JsonView("\"a\"").value(), AnyCodable("a"));
}

TEST(AnyCodable, DescribesItself) {
  const auto expectText = [](const AnyCodable& value, const std::string& text) {
    EXPECT_EQ(value.description(), text);
    EXPECT_EQ(value.debugDescription(), "AnyCodable(" + text + ")");
  };
  expectText(AnyCodable::List{std::optional<int>(), 2.0, 1e-7, "a"}, "[nil, 2.0, 1e-07, \"a\"]");
  expectText(AnyCodable::Object{{"a", 1}}, "[\"a\": 1]");
  expectText(AnyCodable::Object{}, "[:]");
}

std::string nested(std::size_t depth) {
  return std::string(depth, '[') + std::string(depth, ']');
}

TEST(JsonView, RefusesWhatIsNotExactlyOneValue) {
  for (const std::string& text : {std::string(),
                                  std::string(" "),
                                  std::string("{"),
                                  std::string("[1,]"),
                                  std::string("1 2"),
                                  std::string("nul"),
                                  std::string("{\"a\" 1}"),
                                  std::string("'a'"),
                                  std::string("NaN"),
                                  std::string("1e999"),
                                  std::string("1.7976931348623159e308"),
                                  std::string("01"),
                                  std::string("\"\xff\""),
                                  std::string("\"a\nb\""),
                                  std::string("\"\\ud83d\""),
                                  std::string("/**/1"),
                                  std::string(10'000, '['),
                                  std::string("1\0", 2),
                                  "{\"a\":" + nested(10'000) + ",}",
                                  nested(10'000) + "]"}) {
    SCOPED_TRACE(text.substr(0, 20));
    EXPECT_THROW((void)JsonView(text), PLRError);
    EXPECT_FALSE(isJsonObject(text));
    EXPECT_EQ(from<AnyCodable>(text), std::nullopt);
  }
}

TEST(JsonView, SkipsWhatNobodyAsksForHoweverDeepItIs) {
  EXPECT_NO_THROW((void)JsonView(nested(64)).value());
  EXPECT_THROW((void)JsonView(nested(65)).value(), PLRError);
  const std::string text =
      "{\"a\":[" + nested(10'000) + ",\"]\"],\"b\":" + nested(1'000'000) + ",\"c\":7}";
  const JsonView view(text);
  EXPECT_EQ(view.find("c")->text(), "7");
  EXPECT_EQ(from<AnyCodable>(text), std::nullopt);
}

TEST(JsonView, TakesTheLastOfTheValuesUnderOneKey) {
  const std::string text = R"({"a":1,"b":2,"a":[3]})";
  EXPECT_EQ(JsonView(text).find("a")->text(), "[3]");
  EXPECT_EQ(encodeJson(JsonView(text).value()), R"({"a":[3],"b":2})");
  EXPECT_EQ((from<std::map<std::string, std::int64_t>>(R"({"a":1,"a":3})")),
            (std::map<std::string, std::int64_t>{{"a", 3}}));
}

TEST(JsonView, BoundsTheMemoryOfAnAnswer) {
  std::string zeros = "[0";
  for (int i = 0; i < 200'000; ++i) zeros += ",0";
  EXPECT_THROW((void)JsonView(zeros + "]").value(), PLRError);
}

TEST(JsonWriter, YieldsValidJsonForAnyBytes) {
  EXPECT_EQ(encodeJson(std::string("a\xff\xe2\x82z\x01\x7f")), "\"a\uFFFD\uFFFDz\\u0001\x7f\"");
  std::string all;
  for (int i = 0; i < 256; ++i) all += static_cast<char>(i);
  EXPECT_TRUE(isJsonObject(encodeJson(AnyCodable::Object{{all, all}})));
}

TEST(JsonHelpers, TurnFailureIntoAValue) {
  const AnyCodable::Object infinite = {{"a", std::numeric_limits<double>::infinity()}};
  EXPECT_EQ(toJSONData(infinite), std::nullopt);
  EXPECT_EQ(toPrettyJson(infinite), "Error in getting prettyJson");
  EXPECT_EQ(json(infinite), "Not a valid JSON");
  AnyCodable deep;
  for (int i = 0; i < 100; ++i) deep = AnyCodable::List{deep};
  EXPECT_THROW((void)encodeJson(deep), PLRError);
  EXPECT_EQ(json({}), "{}");
}

TEST(JsonHelpers, ReadDictionaries) {
  const LogCapture log;
  EXPECT_EQ(json(toDictionary("{\"a\":[true]}")), "{\"a\":[true]}");
  EXPECT_EQ(json(toDictionary("[1]")), "{}");
  EXPECT_TRUE(log.lines().empty());
  EXPECT_EQ(json(toDictionary("{")), "{}");
  EXPECT_TRUE(log.lines().at(0).starts_with(
      "ERROR When trying to convert String to Dictionary, an error has occurred: "));
}

}  // namespace
}  // namespace pelorino
