#include <filesystem>
#include <fstream>

#include "BlackBoxTest.h"

namespace pelorino::blackbox {
namespace {

/// The example: a user comes over from an earlier generation of the library, and plays.
TEST_F(BlackBoxTest, AUserComesOverFromAnEarlierGenerationOnce) {
  const std::string legacy = PELORINO_EXAMPLES "/legacy";
  std::filesystem::copy(legacy, file_.support(), std::filesystem::copy_options::recursive);
  for (int launch = 0; launch < 2; ++launch) {
    HostProcess host(file_, backend_.url());
    std::ifstream lines(legacy + "/evening.jsonl");
    for (std::string line; std::getline(lines, line);) host.run(line);
    ASSERT_TRUE(host.drain());
    ASSERT_TRUE(host.deliver());
    EXPECT_TRUE(host.logs("\"grace\"")) << "the answer to getUserId";
    EXPECT_EQ(host.end(), 0);
  }
  EXPECT_EQ(file_.run("SELECT userId, previousUserId, level FROM users WHERE isDefaultUser = 0"),
            "grace|grace-at-school|13");
  EXPECT_EQ(file_.run("SELECT orderId FROM realPaymentMarks ORDER BY id"), "order-17\norder-23");
  EXPECT_EQ(file_.run("SELECT step FROM tutorialMarkEntry ORDER BY id"), "-1\n1\n-2");
  for (const Arrived& arrived : backend_.events("ce")) EXPECT_EQ(arrived.userId, "grace");
  EXPECT_EQ(backend_.events("ce").size(), 2U);
  EXPECT_TRUE(backend_.events("tr").empty());
  EXPECT_TRUE(backend_.events("rp").empty());
  EXPECT_EQ(backend_.summary("grace").at("card"),
            boost::json::parse(R"({"guild":"Slime Scouts","name":"Grace","slimes beaten":43})"));
}

}  // namespace
}  // namespace pelorino::blackbox
