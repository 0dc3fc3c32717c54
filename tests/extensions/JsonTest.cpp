#include <gtest/gtest.h>

#include <cmath>
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
  struct Case {
    const char* text;
    Kind kind;
    std::string written;
  };
  const Case cases[] = {
      {"2", Kind::integer, "2"},
      {"2.0", Kind::integer, "2"},
      {"2e0", Kind::integer, "2"},
      {"-0.0", Kind::integer, "0"},
      {"1e18", Kind::integer, "1000000000000000000"},
      {"9007199254740993.0", Kind::integer, "9007199254740993"},
      {"9223372036854775807", Kind::integer, "9223372036854775807"},
      {"-9223372036854775808", Kind::integer, "-9223372036854775808"},
      {"9223372036854775808", Kind::unsignedInteger, "9223372036854775808"},
      {"18446744073709551615", Kind::unsignedInteger, "18446744073709551615"},
      {"18446744073709551616", Kind::floating, "1.8446744073709552e+19"},
      {"-9223372036854775809", Kind::floating, "-9.223372036854776e+18"},
      {"2.5", Kind::floating, "2.5"},
      {"0.1", Kind::floating, "0.1"},
      {"4.9901", Kind::floating, "4.9901"},
      {"7.2057594037927933e16", Kind::integer, "72057594037927936"},
      {"5e-324", Kind::floating, "5e-324"},
      {"1e-400", Kind::integer, "0"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    const AnyCodable value = JsonView(c.text).value();
    EXPECT_EQ(value.kind(), c.kind);
    EXPECT_EQ(encodeJson(value), c.written);
  }
}

TEST(AnyCodable, GoesThroughJsonWithoutLoss) {
  for (const char* text :
       {"[1,null,\"a\",true]", "{\"a\":{\"b\":[{\"c\":1.5}]},\"d\":[]}", "\"\"", "[]", "{}", "null",
        "{\"\":\"\\\"\\\\\\b\\f\\n\\r\\t\\u0001\\u0000\"}", "\"\u00e9\u20ac\U0001F600\""}) {
    EXPECT_EQ(rewritten(text), text);
  }
  EXPECT_EQ(rewritten("\"\\ud83d\\ude00\\/\\u00e9\""), "\"\U0001F600/\u00e9\"");
  EXPECT_EQ(rewritten("{\"a\":1,\"a\":2}"), "{\"a\":2}");
}

TEST(AnyCodable, IsEqualWithinOneKindOnly) {
  const AnyCodable values[] = {nullptr,
                               true,
                               1,
                               std::uint64_t{1},
                               1.0,
                               "1",
                               "true",
                               AnyCodable::List{1},
                               AnyCodable::Object{{"a", 1}}};
  for (const AnyCodable& left : values) {
    for (const AnyCodable& right : values) EXPECT_EQ(left == right, &left == &right);
  }
  EXPECT_EQ(AnyCodable(AnyCodable::List{1, "a"}), AnyCodable(AnyCodable::List{1, "a"}));
  // What came out of a text equals nothing, unless it is empty.
  EXPECT_NE(JsonView("[1]").value(), JsonView("[1]").value());
  EXPECT_NE(JsonView("[1]").value(), AnyCodable(AnyCodable::List{1}));
  EXPECT_NE(JsonView("{\"a\":1}").value(), JsonView("{\"a\":1}").value());
  EXPECT_EQ(JsonView("[]").value(), AnyCodable(AnyCodable::List{}));
  EXPECT_NE(JsonView("[]").value(), JsonView("{}").value());
  EXPECT_EQ(JsonView("\"a\"").value(), AnyCodable("a"));
}

TEST(AnyCodable, DescribesItself) {
  struct Case {
    AnyCodable value;
    std::string plain;
    std::string debug;
  };
  const Case cases[] = {
      {std::optional<int>(), "nil", "AnyCodable(nil)"},
      {std::optional<int>(3), "3", "AnyCodable(3)"},
      {false, "false", "AnyCodable(false)"},
      {2.0, "2.0", "AnyCodable(2.0)"},
      {1e22, "1e+22", "AnyCodable(1e+22)"},
      {1e-7, "1e-07", "AnyCodable(1e-07)"},
      {"a b", "a b", "AnyCodable(\"a b\")"},
      {AnyCodable::List{1, "a"}, "[1, \"a\"]", "AnyCodable([1, \"a\"])"},
      {AnyCodable::Object{{"a", 1}, {"a", 2}}, "[\"a\": 1]", "AnyCodable([\"a\": 1])"},
      {AnyCodable::Object{}, "[:]", "AnyCodable([:])"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(c.value.description(), c.plain);
    EXPECT_EQ(c.value.debugDescription(), c.debug);
  }
}

TEST(JsonView, RefusesWhatIsNotExactlyOneValue) {
  const std::string deep = std::string(10'000, '[') + std::string(10'000, ']');
  const std::string many = "[" + std::string(std::size_t{2} * 200'000, ' ');
  for (const std::string& text :
       {std::string(), std::string(" "), std::string("{"), std::string("[1,]"), std::string("1 2"),
        std::string("nul"), std::string("{\"a\" 1}"), std::string("'a'"), std::string("NaN"),
        std::string("1e999"), std::string("01"), std::string("\"\xff\""), std::string("\"a\nb\""),
        std::string("\"\\ud83d\""), std::string("/**/1"), deep, many, std::string("1\0", 2)}) {
    SCOPED_TRACE(text.substr(0, 20));
    EXPECT_THROW((void)JsonView(text), PLRError);
    EXPECT_FALSE(isJsonObject(text));
    EXPECT_EQ(from<AnyCodable>(text), std::nullopt);
  }
  EXPECT_NO_THROW((void)JsonView(std::string(40, '[') + std::string(40, ']')));
  EXPECT_THROW((void)JsonView(std::string(41, '[') + std::string(41, ']')), PLRError);
}

TEST(JsonView, BoundsTheMemoryOfAnAnswer) {
  std::string zeros = "[0";
  for (int i = 0; i < 200'000; ++i) zeros += ",0";
  zeros += ']';
  EXPECT_THROW((void)JsonView(zeros).value(), PLRError);
}

TEST(JsonView, FindsValuesWhateverSurroundsThem) {
  const JsonView view(" {\"a\\u0062\" : [ 1 , {\"x\":\"]}\\\"\"} ] ,\"x\":1, \"x\" : \"\\\\\"}\n");
  EXPECT_EQ(view.find("ab")->text(), "[ 1 , {\"x\":\"]}\\\"\"} ]");
  EXPECT_EQ(view.find("x")->text(), "\"\\\\\"");
  EXPECT_EQ(view.find("y"), std::nullopt);
  EXPECT_EQ(JsonView("[1]").find("x"), std::nullopt);
  std::vector<std::string> elements;
  view.find("ab")->forEachElement([&](JsonView each) { elements.emplace_back(each.text()); });
  EXPECT_EQ(elements, (std::vector<std::string>{"1", "{\"x\":\"]}\\\"\"}"}));
}

TEST(JsonWriter, YieldsValidJsonForAnyBytes) {
  EXPECT_EQ(encodeJson(std::string("a\xff\xe2\x82z\x01\x7f")), "\"a\uFFFD\uFFFDz\\u0001\x7f\"");
  std::string all;
  for (int i = 0; i < 256; ++i) all += static_cast<char>(i);
  EXPECT_TRUE(isJsonObject(encodeJson(AnyCodable::Object{{all, all}})));
}

TEST(JsonWriter, WritesDoublesSoThatTheyReadBack) {
  for (const double value : {0.1, 1.0 / 3, 2.0, 1e15, 1e16, 1e-5, 123456.789, -0.5, 1e300,
                             std::numeric_limits<double>::denorm_min(),
                             std::numeric_limits<double>::max(), 9007199254740993.0}) {
    const std::string text = encodeJson(value);
    EXPECT_EQ(std::strtod(text.c_str(), nullptr), value) << text;
    EXPECT_NE(text.find_first_of(".e"), std::string::npos) << text;
    EXPECT_NO_THROW((void)JsonView(text)) << text;
  }
}

TEST(JsonHelpers, TurnFailureIntoAValue) {
  const AnyCodable::Object infinite = {{"a", std::numeric_limits<double>::infinity()}};
  EXPECT_EQ(toJSONData(infinite), std::nullopt);
  EXPECT_EQ(toPrettyJson(infinite), "Error in getting prettyJson");
  EXPECT_EQ(json(infinite), "Not a valid JSON");
  AnyCodable nested;
  for (int i = 0; i < 100; ++i) nested = AnyCodable::List{nested};
  try {
    (void)encodeJson(nested);
    ADD_FAILURE() << "nested too deep";
  } catch (const PLRError& error) {
    EXPECT_EQ(error.description(), "AnyCodable value cannot be encoded");
  }
  EXPECT_EQ(json({}), "{}");
}

TEST(JsonHelpers, ReadDictionaries) {
  struct Case {
    const char* text;
    std::string written;
    bool logs;
  };
  const Case cases[] = {{"{\"a\":[true]}", "{\"a\":[true]}", false},
                        {"[1]", "{}", false},
                        {"", "{}", true},
                        {"{", "{}", true}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    const LogCapture log;
    EXPECT_EQ(json(toDictionary(c.text)), c.written);
    ASSERT_EQ(log.lines().size(), c.logs ? 1U : 0U);
    if (c.logs) {
      EXPECT_EQ(log.lines()[0].rfind("ERROR When trying to convert String to Dictionary, an error "
                                     "has occurred: ",
                                     0),
                0U);
    }
  }
}

TEST(JsonHelpers, LayJsonOutInLines) {
  EXPECT_EQ(indentedJson("{\"a\":[1,{}],\"b\\\"{\":\"x: y,[\"}"),
            "{\n  \"a\": [\n    1,\n    {}\n  ],\n  \"b\\\"{\": \"x: y,[\"\n}");
  EXPECT_EQ(indentedJson("[ [ ] , 1 ]"), "[\n  [],\n  1\n]");
}

}  // namespace
}  // namespace pelorino
