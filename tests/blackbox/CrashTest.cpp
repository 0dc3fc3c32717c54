#include "BlackBoxTest.h"

namespace pelorino::blackbox {
namespace {

namespace json = boost::json;

/// What the process had in hand when it was killed.
class Crash : public BlackBoxTest {
 protected:
  static void runAll(HostProcess& host, const std::vector<std::string>& lines) {
    for (const std::string& line : lines) host.run(line);
    EXPECT_TRUE(host.drain());
  }
};

TEST_F(Crash, LeavesTheSumsOfEachUserToTheNextStart) {
  configure({{"sessionTimeout", 100}});
  json::array sessions;
  std::string lastCredits;
  {
    const auto host = configuredHost({{"userId", "named"}, {"currentLevel", 3}});
    // The default user's session opens later. Going back from it neither ends it nor sends sums.
    runAll(*host, {R"({"op":"setUserId","userId":""})",
                   R"({"op":"currencyAccrual","currencyName":"gold","currencyAmount":5,)"
                   R"("source":"quest","accrualType":"earned"})",
                   R"({"op":"currencyAccrual","currencyName":"gold","currencyAmount":2,)"
                   R"("source":"quest","accrualType":"earned"})",
                   R"({"op":"sleep","ms":20})", R"({"op":"setUserId","userId":"named"})",
                   R"({"op":"currencyAccrual","currencyName":"gems","currencyAmount":9,)"
                   R"("source":"shop","accrualType":"bought"})",
                   R"({"op":"sleep","ms":20})",
                   R"({"op":"currencyAccrual","currencyName":"gold","currencyAmount":1,)"
                   R"("source":"quest","accrualType":"earned"})"});
    ASSERT_TRUE(deliver(*host));
    EXPECT_EQ(backend().events("ca").size(), 0U);
    for (const Arrived& start : backend().events("ss")) {
      sessions.push_back(start.event.at("timestamp"));
    }
    lastCredits = query(*host,
                        "SELECT MAX(timestamp) FROM currencyAccrualResources"
                        " GROUP BY userId ORDER BY userId");
    host->kill();
  }
  ASSERT_EQ(sessions.size(), 2U);
  std::this_thread::sleep_for(std::chrono::milliseconds(150));
  const auto host = startedHost({{"userId", "named"}});
  const std::vector<std::string> stored = host->linesWith("Create a new event");
  const std::string order[] = {"code: ca", "code: ca", "code: ss"};
  ASSERT_GE(stored.size(), std::size(order));
  for (std::size_t i = 0; i < std::size(order); ++i) {
    EXPECT_NE(stored[i].find(order[i]), std::string::npos) << stored[i];
  }
  const auto sessionLine = [&](std::size_t i) {
    return "sessionId: " + json::serialize(sessions[i]);
  };
  EXPECT_NE(stored[0].find(sessionLine(0)), std::string::npos) << stored[0];
  EXPECT_NE(stored[1].find(sessionLine(1)), std::string::npos) << stored[1];

  const std::size_t lineEnd = lastCredits.find('\n');
  const json::value want[] = {{{"code", "ca"},
                               {"timestamp", std::stoll(lastCredits.substr(0, lineEnd))},
                               {"sessionId", sessions[0]},
                               {"level", 3},
                               {"earned", {{"quest", {{"gold", 1}}}}},
                               {"bought", {{"shop", {{"gems", 9}}}}}},
                              {{"code", "ca"},
                               {"timestamp", std::stoll(lastCredits.substr(lineEnd + 1))},
                               {"sessionId", sessions[1]},
                               {"level", 1},
                               {"earned", {{"quest", {{"gold", 7}}}}}}};
  const std::vector<Arrived> sums = backend().events("ca");
  ASSERT_EQ(sums.size(), std::size(want));
  for (const Arrived& sum : sums) {
    EXPECT_EQ(json::value(sum.event), want[sum.userId == "named" ? 0 : 1]);
  }
  EXPECT_EQ(query(*host, "SELECT count(*) FROM currencyAccrualResources"), "0");
}

TEST_F(Crash, LosesNothingOfTheCard) {
  const struct {
    const char* label;
    std::vector<std::string> lines;
    std::string want;  ///< The card that the backend has put together after the next start.
  } cases[] = {
      {"set",
       {R"({"op":"userCard.setName","name":"Ada, \"the\" slayer's 👩‍🚀"})",
        R"({"op":"userCard.set","key":"score","value":9223372036854775807})",
        R"({"op":"userCard.set","key":"ratio","value":0.1})",
        R"({"op":"userCard.set","key":"VIP","value":true})"},
       R"({"name":"Ada, \"the\" slayer's 👩🚀","score":9223372036854775807,"ratio":0.1,"VIP":true})"},
      {"added to, and set again",
       {R"({"op":"userCard.increment","key":"ratio","value":1})",
        R"({"op":"userCard.increment","key":"coins","value":4})",
        R"({"op":"userCard.increment","key":"coins","value":-6})",
        R"({"op":"userCard.setName","name":"Ada"})"},
       R"({"name":"Ada","score":9223372036854775807,"ratio":1.1,"VIP":true,"coins":-2})"},
      {"unset",
       {R"({"op":"userCard.unset","properties":["score","VIP","never there"]})",
        R"({"op":"userCard.unset","property":"NAME"})"},
       R"({"ratio":1.1,"coins":-2})"},
      {"cleared, and set",
       {R"({"op":"userCard.clearUser"})", R"({"op":"drain"})",
        R"({"op":"userCard.setAge","age":36})"},
       R"({"age":36})"},
  };
  for (const auto& [label, lines, want] : cases) {
    SCOPED_TRACE(label);
    const auto host = startedHost({{"userId", "ada"}});
    runAll(*host, lines);
    host->kill();
    const auto next = startedHost({{"userId", "ada"}});
    EXPECT_EQ(backend().summary("ada").at("card"), json::parse(want));
    EXPECT_EQ(next->end(), 0);
  }
}

}  // namespace
}  // namespace pelorino::blackbox
