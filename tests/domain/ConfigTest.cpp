#include <gtest/gtest.h>

#include <string>

#include "Config.h"
#include "JsonHelpers.h"
#include "MessagingConfig.h"

namespace pelorino {
namespace {

constexpr const char* required =
    "\"timeForRequest\":1,\"countForRequest\":2,\"eventParamsCount\":3,\"sessionTimeout\":4,"
    "\"serverTime\":5,\"aliveTimeout\":6,\"userCounting\":false";

std::string with(const std::string& more) {
  return "{" + std::string(required) + more + "}";
}

std::string without(const std::string& key) {
  std::string text = with("");
  const std::size_t at = text.find("\"" + key + "\"");
  const std::size_t end = text.find_first_of(",}", at);
  text.erase(at, end - at + (text[end] == ',' ? 1 : 0));
  if (const std::size_t comma = text.find(",}"); comma != std::string::npos) text.erase(comma, 1);
  return text;
}

TEST(Config, IsReadWholeOrNotAtAll) {
  struct Case {
    const char* label;
    std::string text;
    bool reads;
  };
  const Case cases[] = {
      {"all required", with(""), true},
      {"unknown keys", with(",\"new\":{\"a\":[1]}"), true},
      {"optional null", with(",\"exclude\":null,\"sbsBundles\":null"), true},
      {"integers with a zero fraction", with(",\"sbsConfigVersion\":2.0"), true},
      {"no fields", "{}", false},
      {"a list", "[]", false},
      {"a fraction", with(",\"sbsConfigVersion\":2.5"), false},
      {"beyond Int64", with(",\"sbsConfigVersion\":9223372036854775808"), false},
      {"a text for a number", with(",\"currencyAggregationTimeout\":\"1\""), false},
      {"a number for a boolean", with(",\"userCounting\":1"), false},
      {"null for a required field", with(",\"aliveTimeout\":null"), false},
      {"a number among texts", with(",\"sbsBundles\":[\"a\",1]"), false},
      {"exclusions without a version", with(",\"exclude\":{\"all\":true}"), false},
      {"an argument that is no list", with(",\"exclude\":{\"version\":1,\"events\":{\"ce\":1}}"),
       false},
      {"a wrong type inside", with(",\"userProperties\":{\"country\":7}"), false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    EXPECT_EQ(from<Config>(c.text).has_value(), c.reads);
  }
  for (const char* key : {"timeForRequest", "countForRequest", "eventParamsCount", "sessionTimeout",
                          "serverTime", "aliveTimeout", "userCounting"}) {
    EXPECT_FALSE(from<Config>(without(key))) << without(key);
  }
}

TEST(Config, IsWrittenAsItIsRead) {
  for (const std::string& text :
       {with(""), with(",\"currencyAggregationTimeout\":7,\"sbsBundles\":[\"a\"],"
                       "\"sbsConfigVersion\":8,\"exclude\":{\"version\":9,\"all\":true,"
                       "\"events\":{\"ce\":[\"a\",1,true],\"pe\":[]}},"
                       "\"userProperties\":{\"country\":\"CY\"}")}) {
    EXPECT_EQ(encodeJson(decodeJson<Config>(text)), text);
  }
}

TEST(Config, DefaultsKeepTheTimeOfTheirFirstUse) {
  const Config& defaults = Config::defaulConfiguration();
  EXPECT_GT(defaults.serverTime, 1'600'000'000'000);
  EXPECT_EQ(encodeJson(defaults),
            "{\"timeForRequest\":120000,\"countForRequest\":10,\"eventParamsCount\":20,"
            "\"sessionTimeout\":600000,\"serverTime\":" +
                std::to_string(Config::defaulConfiguration().serverTime) +
                ",\"aliveTimeout\":300000,\"userCounting\":true,"
                "\"currencyAggregationTimeout\":360000,\"sbsConfigVersion\":0}");
}

TEST(MessagingConfig, NeedsItsKeysButNotTheirValues) {
  struct Case {
    const char* text;
    bool reads;
    std::size_t categories;
  };
  const Case cases[] = {
      {"{\"pushCategories\":{\"version\":1,\"categories\":null}}", true, 0},
      {"{\"pushCategories\":{\"version\":1,\"categories\":[{\"id\":\"c\",\"buttons\":[{\"id\":"
       "\"b\",\"text\":\"t\",\"activationMode\":null}]}],\"removed\":[\"d\"]}}",
       true, 1},
      {"{\"pushCategories\":{\"version\":1}}", false, 0},
      {"{\"version\":1,\"categories\":null}", false, 0},
      {"{\"pushCategories\":{\"version\":1,\"categories\":[{\"id\":\"c\",\"buttons\":[{\"id\":"
       "\"b\",\"text\":\"t\"}]}]}}",
       false, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    const auto config = from<MessagingConfig>(c.text);
    ASSERT_EQ(config.has_value(), c.reads);
    if (config) {
      EXPECT_EQ(config->categories.size(), c.categories);
    }
  }
}

}  // namespace
}  // namespace pelorino
