#include <map>

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
  const auto credit = [](const std::string& currency, const std::string& type) {
    return R"({"op":"currencyAccrual","currencyAmount":5,"source":"quest","currencyName":")" +
           currency + R"(","accrualType":")" + type + "\"}";
  };
  {
    const auto host = configuredHost({{"userId", "named"}, {"currentLevel", 3}});
    // Going back from the default user neither ends its session nor sends its sums.
    runAll(*host, {R"({"op":"setUserId","userId":""})", credit("gold", "earned"),
                   credit("gold", "earned"), R"({"op":"setUserId","userId":"named"})",
                   credit("gems", "bought"), credit("gold", "earned")});
    ASSERT_TRUE(host->deliver());
    EXPECT_EQ(backend().events("ca").size(), 0U);
    host->kill();
  }
  std::map<std::string, json::value> sessions;
  for (const Arrived& start : backend().events("ss")) {
    sessions[start.userId] = start.event.at("timestamp");
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(150));
  const auto host = startedHost({{"userId", "named"}});
  EXPECT_EQ(backend().events("ss").size(), sessions.size() + 1) << "a new session has begun";
  const std::vector<Arrived> sums = backend().events("ca");
  ASSERT_EQ(sums.size(), 2U);
  for (const Arrived& sum : sums) {
    EXPECT_EQ(sum.event.at("sessionId"), sessions.at(sum.userId));
    EXPECT_EQ(sum.content(),
              json::parse(sum.userId == "named" ? R"({"level":3,"earned":{"quest":{"gold":5}},)"
                                                  R"("bought":{"quest":{"gems":5}}})"
                                                : R"({"level":1,"earned":{"quest":{"gold":10}}})"));
  }
  EXPECT_NE(sums[0].userId, sums[1].userId);
  EXPECT_EQ(host->query("SELECT count(*) FROM currencyAccrualResources"), "0");
}

TEST_F(Crash, LosesNothingOfTheCard) {
  const struct {
    const char* label;
    std::vector<std::string> lines;
    std::string want;  ///< The card that the backend has put together after the next start.
  } cases[] = {
      {"set, and added to",
       {R"({"op":"userCard.setName","name":"Ada, \"the\" slayer's 👩‍🚀"})",
        R"({"op":"userCard.set","key":"score","value":9223372036854775807})",
        R"({"op":"userCard.set","key":"ratio","value":0.1})",
        R"({"op":"userCard.set","key":"VIP","value":true})",
        R"({"op":"userCard.increment","key":"ratio","value":1})",
        R"({"op":"userCard.increment","key":"coins","value":-2})"},
       R"({"name":"Ada, \"the\" slayer's 👩🚀","score":9223372036854775807,"ratio":1.1,)"
       R"("VIP":true,"coins":-2})"},
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
