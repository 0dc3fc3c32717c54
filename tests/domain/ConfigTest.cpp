#include <gtest/gtest.h>

#include <string>

#include "Config.h"
#include "JsonHelpers.h"

namespace pelorino {
namespace {

constexpr const char* required[] = {"timeForRequest", "countForRequest", "eventParamsCount",
                                    "sessionTimeout", "serverTime",      "aliveTimeout"};

/// The required fields but `left`, and more.
std::string with(const std::string& more, const std::string& left = {}) {
  std::string fields;
  for (const std::string field : required) {
    if (field != left) fields += "\"" + field + "\":" + std::to_string(field.size()) + ",";
  }
  return "{" + fields + "\"userCounting\":false" + more + "}";
}

TEST(Config, IsReadWholeOrNotAtAll) {
  for (const char* more : {"", ",\"new\":{\"a\":[1]}", ",\"exclude\":null,\"sbsBundles\":null",
                           ",\"sbsConfigVersion\":2.0"}) {
    EXPECT_TRUE(from<Config>(with(more))) << more;
  }
  for (const char* more :
       {",\"sbsConfigVersion\":2.5", ",\"sbsConfigVersion\":9223372036854775808",
        ",\"sbsConfigVersion\":18446744073709551616", ",\"sbsConfigVersion\":\"\xFF\"",
        ",\"currencyAggregationTimeout\":\"1\"", ",\"userCounting\":1", ",\"aliveTimeout\":null",
        ",\"sbsBundles\":[\"a\",1]", ",\"exclude\":{\"all\":true}",
        ",\"exclude\":{\"version\":1,\"events\":{\"ce\":1}}",
        ",\"userProperties\":{\"country\":7}"}) {
    EXPECT_FALSE(from<Config>(with(more))) << more;
  }
  for (const char* left : required) EXPECT_FALSE(from<Config>(with("", left))) << left;
  for (const std::string& text : {std::string("[]"), std::string("null"), with("") + " {"}) {
    EXPECT_FALSE(from<Config>(text)) << text;
  }
}

}  // namespace
}  // namespace pelorino
