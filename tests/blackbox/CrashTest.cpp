#include <map>

#include "BlackBoxTest.h"

namespace pelorino::blackbox {
namespace {

namespace json = boost::json;

class Crash : public BlackBoxTest {};

TEST_F(Crash, LeavesTheSumsOfEachUserToTheNextStart) {
  {
    const auto host = startedHost({{"userId", "named"}, {"currentLevel", 3}});
    const auto credit = [&](const std::string& currency, const std::string& type) {
      host->run(R"({"op":"currencyAccrual","currencyAmount":5,"source":"quest","currencyName":")" +
                currency + R"(","accrualType":")" + type + "\"}");
    };
    host->run(R"({"op":"setUserId","userId":""})");
    for (int i = 0; i < 2; ++i) credit("gold", "earned");
    // Going back from the default user neither ends its session nor sends its sums.
    host->run(R"({"op":"setUserId","userId":"named"})");
    credit("gems", "bought");
    credit("gold", "earned");
    ASSERT_TRUE(host->deliver());
    EXPECT_EQ(backend_.events("ca").size(), 0U);
    host->kill();
  }
  std::map<std::string, json::value> sessions;
  for (const Arrived& start : backend_.events("ss")) {
    sessions[start.userId] = start.event.at("timestamp");
  }
  const auto host = startedHost({{"userId", "named"}});
  const std::vector<Arrived> sums = backend_.events("ca");
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

}  // namespace
}  // namespace pelorino::blackbox
