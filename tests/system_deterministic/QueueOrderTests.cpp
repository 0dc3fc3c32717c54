#include <algorithm>
#include <string>
#include <vector>

#include "DeterministicTest.h"

namespace pelorino {
namespace {

class QueueOrder : public DeterministicTest {
 protected:
  /// Three queues of four blocks each: the order in which a seed runs them.
  std::string order(std::uint64_t withSeed) {
    system.reset(withSeed);
    std::string run;
    std::vector<std::unique_ptr<SerialQueue>> queues;
    for (char name = 'a'; name <= 'c'; ++name) {
      queues.push_back(system.executor().makeQueue(std::string(1, name)));
      for (int i = 0; i < 4; ++i) {
        queues.back()->add([&run, name, i] { run += {name, static_cast<char>('0' + i)}; });
      }
    }
    EXPECT_EQ(run, "") << "add() ran a block";
    system.runUntilIdle();
    return run;
  }
};

TEST_F(QueueOrder, ASeedChoosesAmongQueuesAndNeverWithinOne) {
  std::vector<std::string> orders;
  for (std::uint64_t s = 1; s <= 20; ++s) {
    SCOPED_TRACE(s);
    orders.push_back(order(s));
    EXPECT_EQ(order(s), orders.back()) << "the same seed ran otherwise";
    for (char name = 'a'; name <= 'c'; ++name) {
      std::string digits;
      for (std::size_t i = 0; i < orders.back().size(); i += 2) {
        if (orders.back()[i] == name) digits += orders.back()[i + 1];
      }
      EXPECT_EQ(digits, "0123");
    }
  }
  std::sort(orders.begin(), orders.end());
  const auto distinct = std::unique(orders.begin(), orders.end()) - orders.begin();
  EXPECT_GT(distinct, 15) << "seeds hardly differ";
}

}  // namespace
}  // namespace pelorino
