#include <set>

#include "BlackBoxTest.h"

namespace pelorino::blackbox {
namespace {

namespace json = boost::json;

class Road : public BlackBoxTest {};

TEST_F(Road, LosesAndDoublesNothingWhenTheProcessIsKilled) {
  const char* parameters = R"({"hp":1,"ratio":0.5,"whole":2.0,"hit":true,"who":"x"})";
  std::vector<std::string> names = {"boss"};
  for (int i = 0; i < 999; ++i) names.push_back("event " + std::to_string(i));
  {
    const auto host = startedHost();
    stopBackend();
    host->run(R"({"op":"customEvent","eventName":"boss","parameters":)" + std::string(parameters) +
              "}");
    for (std::size_t i = 1; i < names.size(); ++i) host->customEvent(names[i]);
    ASSERT_TRUE(host->drain());
    ASSERT_TRUE(host->logs("submission failed"));
    host->kill();
  }
  restartBackend();
  const auto host = startedHost();
  EXPECT_EQ(backend().names(), names);
  const std::vector<Arrived> arrived = backend().events("ce");
  EXPECT_EQ(arrived.at(0).event.at("parameters"), json::parse(parameters));
  std::set<std::size_t> sizes;
  for (const Arrived& each : arrived) sizes.insert(each.packageSize);
  EXPECT_EQ(sizes, std::set<std::size_t>{10});
  EXPECT_EQ(backend().events("ss").size(), 1U) << "the next launch goes on with the session";
  EXPECT_EQ(host->end(), 0);
}

}  // namespace
}  // namespace pelorino::blackbox
