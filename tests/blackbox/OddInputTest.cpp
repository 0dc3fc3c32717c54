#include <algorithm>
#include <iterator>
#include <limits>
#include <map>

#include "BlackBoxTest.h"

namespace pelorino::blackbox {
namespace {

namespace json = boost::json;

constexpr std::size_t entries = 10'000;

struct Operation {
  const char* line;     ///< A command that is accepted, with a usual value for each argument.
  const char* method;   ///< As the log names it.
  const char* code;     ///< Of the event that an accepted call stores; empty for none.
  bool isOnce = false;  ///< Only the first of its events is stored.
};

constexpr Operation operations[] = {
    {R"({"op":"tutorial","step":7})", "Tutorial", "tr"},
    {R"({"op":"currentBalance","balance":{"gold":1}})", "CurrentBalance", "cb", true},
    {R"({"op":"customEvent","eventName":"e","parameters":{"p":1,"q":"x","r":0.5}})", "CustomEvent",
     "ce"},
    {R"({"op":"virtualCurrencyPayment","purchaseId":"i","purchaseType":"t","purchaseAmount":1,)"
     R"("resources":{"gold":1}})",
     "VirtualCurrencyPayment", "vp"},
    {R"({"op":"virtualCurrencyPayment","purchaseId":"i","purchaseType":"t","purchaseAmount":1,)"
     R"("purchasePrice":1,"purchaseCurrency":"gold"})",
     "VirtualCurrencyPayment", "vp"},
    {R"({"op":"realCurrencyPayment","orderId":"o","price":1.0,"productId":"p",)"
     R"("currencyCode":"EUR"})",
     "RealCurrencyPayment", "rp"},
    {R"({"op":"socialNetworkConnect","socialNetwork":"n"})", "SocialNetworkConnect", "sc"},
    {R"({"op":"socialNetworkPost","socialNetwork":"n","reason":"r"})", "SocialNetworkPost", "sp"},
    {R"({"op":"referrer","utmData":{"source":"s"}})", "Referrer", "rf", true},
    {R"({"op":"adImpression","network":"n","revenue":1.0,"placement":"p","unit":"u"})",
     "AdImpression", "adrv"},
    {R"({"op":"startProgressionEvent","eventName":"e","parameters":{"source":"s",)"
     R"("difficulty":1}})",
     "StartProgressionEvent", ""},
    {R"({"op":"finishProgressionEvent","eventName":"e","parameters":{"duration":1,"spent":{},)"
     R"("earned":{}}})",
     "FinishProgressionEvent", "pe"},
    {R"({"op":"levelUp","level":2,"balances":{}})", "LevelUp", "lu"},
    {R"({"op":"setCurrentLevel","currentLevel":2})", "SetCurrentLevel", ""},
    {R"({"op":"replace","fromUserId":"nobody","toUserId":"nobody else"})", "replaceUserId", ""},
    {R"({"op":"userCard.set","key":"k","value":"v"})", "set(key:value:)", ""},
    {R"({"op":"userCard.set","key":"k","value":1.0})", "set(key:value:)", ""},
    {R"({"op":"userCard.increment","key":"k","value":1.0})", "increment(key:value:)", ""},
    {R"({"op":"userCard.setName","name":"n"})", "setName(name:)", ""},
    {R"({"op":"userCard.getValue","key":"k"})", "getValue(key:_:)", ""},
    {R"({"op":"currencyAccrual","currencyName":"c","currencyAmount":1,"source":"s",)"
     R"("accrualType":"earned"})",
     "CurrencyAccrual", ""},
};

/// JSON pointers to the arguments of a command. A dictionary of amounts is one, with any keys.
std::vector<std::string> argumentsOf(const json::object& command, const std::string& within = "") {
  std::vector<std::string> list;
  for (const auto& [key, value] : command) {
    if (key == "op" || key == "accrualType") continue;  // The host's own names.
    const std::string at = within + "/" + std::string(key);
    const json::object* members = value.if_object();
    const auto isAmount = [](const auto& member) { return member.value().is_int64(); };
    if (!members || std::ranges::all_of(*members, isAmount)) list.push_back(at);
    if (members) std::ranges::copy(argumentsOf(*members, at), std::back_inserter(list));
  }
  return list;
}

json::object dictionary(const std::string& prefix) {
  json::object object;
  for (std::size_t i = 0; i < entries; ++i) object[prefix + std::to_string(i)] = i + 1;
  return object;
}

/// Odd values of the same kind; texts of up to `longest` bytes.
std::vector<json::value> oddValues(const json::value& usual, std::size_t longest) {
  constexpr std::int64_t least64 = std::numeric_limits<std::int64_t>::min();
  constexpr std::int64_t greatest64 = std::numeric_limits<std::int64_t>::max();
  constexpr std::int64_t greatest32 = std::numeric_limits<std::int32_t>::max();
  constexpr double infinity = std::numeric_limits<double>::infinity();
  if (usual.is_string()) {
    return {"", "\x01\n\u200E\u200D", json::string(longest, 'x'), "\xFF\xC3",
            json::string("\xED\xA0\xBD\0'", 5)};
  }
  if (usual.is_int64()) {
    return {least64, -3, -1, 0, 1, greatest32 - 1, greatest32, greatest32 + 1, greatest64};
  }
  if (usual.is_double()) {
    return {1e308, -1e308, 1e-300, -1e-300, 0.0, infinity, -infinity, least64, ~0ULL};
  }
  return {json::object(), json::object({{"", 1}, {"\u200E", 1}}), dictionary("key "),
          dictionary(std::string(24, 'k')), json::object({{"\xFF", greatest32}, {"b", 1}})};
}

std::string textOf(const json::value& command) {
  std::string text = json::serialize(command);
  // Written so, an infinite number would be no JSON.
  const std::string infinite = "Infinity";
  const std::size_t found = text.find(infinite);
  return found == std::string::npos ? text : text.replace(found, infinite.size(), "1e999");
}

class OddInput : public BlackBoxTest {};

TEST_F(OddInput, IsStoredOrRefusedWithAMessageAndNeverEndsTheHost) {
  const auto host = startedHost({{"logLevel", "error"}});
  std::map<std::string, std::size_t> stored;
  for (const auto& [line, method, code, isOnce] : operations) {
    SCOPED_TRACE(line);
    const std::string refusal = std::string("Execution of the ") + method + " method was canceled!";
    const std::size_t refusedBefore = host->linesWith(refusal).size();
    const json::value usual = json::parse(line);
    std::size_t calls = 0;
    for (const std::string& at : argumentsOf(usual.as_object())) {
      // One text of 10 MB for each operation; that takes seconds where a sanitizer watches.
      const std::size_t longest = calls == 0 ? 10'000'000 : 10'000;
      for (const json::value& odd : oddValues(usual.at_pointer(at), longest)) {
        json::value command = usual;
        // Orders count once.
        if (code == std::string("rp")) command.at("orderId") = "order " + std::to_string(calls);
        command.at_pointer(at) = odd;
        if (code == std::string("pe")) {
          host->run(
              textOf({{"op", "startProgressionEvent"}, {"eventName", command.at("eventName")}}));
        }
        host->run(textOf(command));
        ++calls;
      }
      ASSERT_TRUE(host->drain()) << at;
    }
    const std::size_t refused = host->linesWith(refusal).size() - refusedBefore;
    EXPECT_GT(refused, 0U);
    EXPECT_LT(refused, calls);
    if (*code) stored[code] += isOnce ? 1 : calls - refused;
  }
  EXPECT_EQ(host->linesWith("\"error\"").size(), 0U) << "lines that are no commands";

  ASSERT_TRUE(host->deliver());
  std::map<std::string, std::size_t> arrived;
  for (const auto& [code, count] : stored) arrived[code] = backend_.events(code).size();
  EXPECT_EQ(arrived, stored);
  EXPECT_EQ(backend_.events("cb").front().event.at("balance").as_object().size(), entries);

  host->run(R"({"op":"customEvent"})");
  EXPECT_EQ(host->end(), 2) << "it tells of lines that are no commands";
  EXPECT_EQ(host->linesWith("\"error\"").size(), 1U);
}

}  // namespace
}  // namespace pelorino::blackbox
