#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "AsyncOperation.h"

namespace pelorino {
namespace {

using State = AsyncOperation::State;

TEST(AsyncOperation, ExecutesUntilItsWorkSaysThatItIsFinished) {
  std::vector<std::string> changes;
  AsyncOperation operation("upload", [](AsyncOperation& self) {
    self.setState(State::finished);  // Too early: start() has the last word.
  });
  operation.setObserver([&](AsyncOperation::Change change, std::string_view key) {
    changes.push_back((change == AsyncOperation::Change::will ? "will " : "did ") +
                      std::string(key));
  });
  operation.start();
  EXPECT_TRUE(operation.isExecuting());
  changes.clear();
  operation.setState(State::finished);
  EXPECT_TRUE(operation.isFinished());
  EXPECT_EQ(changes, (std::vector<std::string>{"will isFinished", "will isExecuting",
                                               "did isExecuting", "did isFinished"}));
}

TEST(AsyncOperation, RunsNothingOnceItIsCancelled) {
  AsyncOperation operation("upload", [](AsyncOperation&) { FAIL() << "it was cancelled"; });
  operation.cancel();
  operation.start();
  EXPECT_TRUE(operation.isFinished());
}

}  // namespace
}  // namespace pelorino
