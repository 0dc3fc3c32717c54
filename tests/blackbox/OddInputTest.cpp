#include <limits>
#include <map>

#include "BlackBoxTest.h"

namespace pelorino::blackbox {
namespace {

namespace json = boost::json;

constexpr std::int64_t least64 = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t greatest64 = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t greatest32 = std::numeric_limits<std::int32_t>::max();
constexpr double huge = 1e308;
constexpr double tiny = 1e-300;
constexpr std::size_t entries = 10'000;

enum class Kind {
  text,          ///< Cut to its limit; nothing left is refused.
  optionalText,  ///< The same, and nothing left is none.
  exactText,     ///< Refused unless it has exactly as many characters.
  integer,       ///< Refused outside its bounds.
  price,
  revenue,
  amounts,  ///< Entries are dropped; none left is refused.
  optionalAmounts,
  free,  ///< Any scalar value of a parameter; never refused.
};

struct Argument {
  const char* at;  ///< JSON pointer into the command.
  Kind kind;
  std::int64_t least = 0;  ///< Of integers.
  std::int64_t limit = 0;  ///< The largest integer, or the number of characters.
};

struct Operation {
  const char* line;  ///< A command that is accepted.
  const char* method;
  const char* code;  ///< Of the event that an accepted call stores; empty for none.
  std::vector<Argument> arguments;
  std::size_t times = entries;  ///< How many of its events are stored at most.
};

const std::vector<Operation>& operations() {
  using enum Kind;
  static const std::vector<Operation> table = {
      {R"({"op":"tutorial","step":7})", "Tutorial", "tr", {{"/step", integer, -2, greatest32}}},
      {R"({"op":"currentBalance","balance":{"gold":1}})",
       "CurrentBalance",
       "cb",
       {{"/balance", amounts}},
       1},
      {R"({"op":"customEvent","eventName":"e","parameters":{"p":1}})",
       "CustomEvent",
       "ce",
       {{"/eventName", text, 0, 72}, {"/parameters", optionalAmounts}, {"/parameters/p", free}}},
      {R"({"op":"virtualCurrencyPayment","purchaseId":"i","purchaseType":"t","purchaseAmount":1,)"
       R"("resources":{"gold":1}})",
       "VirtualCurrencyPayment",
       "vp",
       {{"/purchaseId", text, 0, 32},
        {"/purchaseType", text, 0, 96},
        {"/purchaseAmount", integer, 1, greatest32},
        {"/resources", amounts}}},
      {R"({"op":"virtualCurrencyPayment","purchaseId":"i","purchaseType":"t","purchaseAmount":1,)"
       R"("purchasePrice":1,"purchaseCurrency":"gold"})",
       "VirtualCurrencyPayment",
       "vp",
       {{"/purchasePrice", integer, 1, greatest32}, {"/purchaseCurrency", text, 0, 24}}},
      {R"({"op":"realCurrencyPayment","orderId":"o","price":1,"productId":"p",)"
       R"("currencyCode":"EUR"})",
       "RealCurrencyPayment",
       "rp",
       {{"/orderId", text, 0, 65},
        {"/price", price},
        {"/productId", text, 0, 255},
        {"/currencyCode", exactText, 0, 3}}},
      {R"({"op":"socialNetworkConnect","socialNetwork":"n"})",
       "SocialNetworkConnect",
       "sc",
       {{"/socialNetwork", text, 0, 24}}},
      {R"({"op":"socialNetworkPost","socialNetwork":"n","reason":"r"})",
       "SocialNetworkPost",
       "sp",
       {{"/socialNetwork", text, 0, 24}, {"/reason", text, 0, 32}}},
      {R"({"op":"referrer","utmData":{"source":"s"}})",
       "Referrer",
       "rf",
       {{"/utmData/source", text, 0, 255}},
       1},
      {R"({"op":"adImpression","network":"n","revenue":1,"placement":"p","unit":"u"})",
       "AdImpression",
       "adrv",
       {{"/network", text, 0, 100},
        {"/placement", optionalText, 0, 100},
        {"/unit", optionalText, 0, 100},
        {"/revenue", revenue}}},
      {R"({"op":"startProgressionEvent","eventName":"e","parameters":{"source":"s",)"
       R"("difficulty":1}})",
       "StartProgressionEvent",
       "",
       {{"/eventName", text, 0, 40},
        {"/parameters/source", optionalText, 0, 40},
        {"/parameters/difficulty", integer, 0, greatest32}}},
      {R"({"op":"finishProgressionEvent","eventName":"e","parameters":{"duration":1,"spent":{},)"
       R"("earned":{}}})",
       "FinishProgressionEvent",
       "pe",
       {{"/eventName", text, 0, 40},
        {"/parameters/duration", integer, 0, greatest32},
        {"/parameters/spent", optionalAmounts},
        {"/parameters/earned", optionalAmounts}}},
      {R"({"op":"levelUp","level":2,"balances":{}})",
       "LevelUp",
       "lu",
       {{"/level", integer, 1, greatest32 - 1}, {"/balances", optionalAmounts}}},
      {R"({"op":"setCurrentLevel","currentLevel":2})",
       "SetCurrentLevel",
       "",
       {{"/currentLevel", integer, 1, greatest32 - 1}}},
      {R"({"op":"replace","fromUserId":"nobody","toUserId":"nobody else"})",
       "replaceUserId",
       "",
       {{"/fromUserId", text, 0, 64}, {"/toUserId", text, 0, 64}}},
      {R"({"op":"userCard.set","key":"k","value":"v"})",
       "set(key:value:)",
       "",
       {{"/key", text, 0, 64}, {"/value", text, 0, 255}}},
      {R"({"op":"userCard.set","key":"k","value":1})", "set(key:value:)", "", {{"/value", price}}},
      {R"({"op":"userCard.increment","key":"k","value":1})",
       "increment(key:value:)",
       "",
       {{"/key", text, 0, 64}, {"/value", price}}},
      {R"({"op":"userCard.setName","name":"n"})", "setName(name:)", "", {{"/name", text, 0, 255}}},
      {R"({"op":"userCard.setAge","age":1})",
       "setAge(age:)",
       "",
       {{"/age", integer, least64, greatest64}}},
      {R"({"op":"userCard.getValue","key":"k"})", "getValue(key:_:)", "", {{"/key", text, 0, 64}}},
      {R"({"op":"currencyAccrual","currencyName":"c","currencyAmount":1,"source":"s",)"
       R"("accrualType":"earned"})",
       "CurrencyAccrual",
       "",
       {{"/currencyName", text, 0, 24},
        {"/currencyAmount", integer, 1, greatest32},
        {"/source", text, 0, 32}}},
  };
  return table;
}

struct Value {
  template <class Given>
  Value(const Given& given, bool refused) : value(json::value_from(given)), isRefused(refused) {}

  json::value value;
  bool isRefused;
};

json::object dictionary(const std::string& prefix) {
  json::object object;
  for (std::size_t i = 0; i < entries; ++i) object[prefix + std::to_string(i)] = i + 1;
  return object;
}

std::vector<Value> oddTexts(const Argument& argument, std::size_t longest) {
  const bool isNeeded = argument.kind != Kind::optionalText;
  const bool isExact = argument.kind == Kind::exactText;
  const auto limit = static_cast<std::size_t>(argument.limit);
  return {{"", isNeeded},
          {"\x01\n\u200E\u200D", isNeeded},
          {std::string(limit + 1, 'x'), isExact},
          {std::string(longest, 'y'), isExact},
          {"\xFF\xC3", isExact},
          {std::string("\xED\xA0\xBD\0'", 5), isExact}};
}

std::vector<Value> oddIntegers(const Argument& argument) {
  std::vector<Value> values = {{argument.least, false}, {argument.limit, false}};
  if (argument.least > least64)
    values.insert(values.end(), {{argument.least - 1, true}, {least64, true}});
  if (argument.limit < greatest64)
    values.insert(values.end(), {{argument.limit + 1, true}, {greatest64, true}});
  return values;
}

/// Values that are odd for the argument, texts of up to `longest` bytes, and whether the call is
/// refused for them.
std::vector<Value> oddValues(const Argument& argument, std::size_t longest) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  const bool isNeeded = argument.kind == Kind::amounts;
  switch (argument.kind) {
    case Kind::text:
    case Kind::optionalText:
    case Kind::exactText:
      return oddTexts(argument, longest);
    case Kind::integer:
      return oddIntegers(argument);
    case Kind::price:
      return {{huge, false},    {-huge, false},    {tiny, false},
              {infinity, true}, {-infinity, true}, {least64, false}};
    case Kind::revenue:
      return {{huge, false}, {0.0, false},     {tiny, false},
              {-tiny, true}, {infinity, true}, {greatest64, false}};
    case Kind::amounts:
    case Kind::optionalAmounts:
      return {{json::object(), isNeeded},
              {json::object({{"", 1}, {"\u200E", 1}}), isNeeded},
              {dictionary("key "), false},
              {dictionary(std::string(24, 'k')), false},
              {json::object({{"\xFF", greatest32}, {"b", 1}}), false}};
    case Kind::free:
      return {{"", false},       {std::string(longest, 'z'), false},
              {infinity, false}, {least64, false},
              {~0ULL, false},    {"\xFF", false}};
  }
  return {};
}

/// The command with the odd value, and an order of its own where orders count once.
std::string commandWith(const Argument& argument, const Value& odd, json::object line) {
  static int order = 0;
  if (line.contains("orderId")) line["orderId"] = "order " + std::to_string(++order);
  json::value command = std::move(line);
  command.at_pointer(argument.at) = odd.value;
  std::string text = json::serialize(command);
  // Written so, an infinite number would be no JSON.
  const std::string infinite = "Infinity";
  const std::size_t found = text.find(infinite);
  return found == std::string::npos ? text : text.replace(found, infinite.size(), "1e999");
}

class OddInput : public BlackBoxTest {};

TEST_F(OddInput, IsStoredOrRefusedWithAMessageAndNeverEndsTheHost) {
  const auto host = startedHost({{"logLevel", "error"}});
  std::map<std::string, std::size_t> refused;
  std::map<std::string, std::size_t> stored;
  for (const Operation& operation : operations()) {
    const json::object line = json::parse(operation.line).as_object();
    std::size_t accepted = 0;
    for (const Argument& argument : operation.arguments) {
      // One text of 10 MB for each operation; that takes seconds where a sanitizer watches.
      const bool isFirst = &argument == &operation.arguments.front();
      for (const Value& odd : oddValues(argument, isFirst ? 10'000'000 : 10'000)) {
        const std::string text = commandWith(argument, odd, line);
        if (operation.code == std::string("pe")) {
          json::object start{{"op", "startProgressionEvent"}, {"eventName", "e"}};
          if (argument.at == std::string("/eventName")) start["eventName"] = odd.value;
          host->run(json::serialize(start));
          if (odd.isRefused && start["eventName"] == odd.value) ++refused["StartProgressionEvent"];
        }
        host->run(text);
        if (odd.isRefused) {
          ++refused[operation.method];
        } else {
          ++accepted;
        }
      }
      ASSERT_TRUE(host->drain()) << operation.line << argument.at;
    }
    if (*operation.code) stored[operation.code] += std::min(accepted, operation.times);
  }
  for (const auto& [method, times] : refused) {
    const std::string message = "Execution of the " + method + " method was canceled!";
    EXPECT_EQ(host->linesWith(message).size(), times) << message;
  }
  EXPECT_EQ(host->linesWith("\"error\"").size(), 0U) << "lines that are no commands";

  ASSERT_TRUE(deliver(*host));
  std::map<std::string, std::size_t> arrived;
  for (const Arrived& event : backend().events("")) {
    const std::string code = json::value_to<std::string>(event.event.at("code"));
    if (code != "ss" && code != "di" && code != "pl") ++arrived[code];
  }
  EXPECT_EQ(arrived, stored);
  EXPECT_EQ(backend().events("cb").front().event.at("balance").as_object().size(), entries);
  EXPECT_EQ(host->end(), 0);
}

}  // namespace
}  // namespace pelorino::blackbox
