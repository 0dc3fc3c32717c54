#include <gtest/gtest.h>

#include <string>

#include "AsyncOperation.h"

namespace pelorino {
namespace {

using State = AsyncOperation::State;

TEST(AsyncOperation, ExecutesUntilItsWorkSaysThatItIsFinishedUnlessItIsCancelled) {
  AsyncOperation operation("upload", [](AsyncOperation& self) {
    EXPECT_FALSE(self.isCancelled());
    self.setState(State::finished);  // Too early: start() has the last word.
  });
  operation.start();
  EXPECT_TRUE(operation.isExecuting());
  std::string changes;
  operation.setObserver([&](AsyncOperation::Change change, std::string_view key) {
    changes.append(change == AsyncOperation::Change::will ? "will " : "did ").append(key) += ' ';
  });
  operation.setState(State::finished);
  EXPECT_EQ(changes, "will isFinished will isExecuting did isExecuting did isFinished ");
  operation.cancel();
  operation.start();
  EXPECT_TRUE(operation.isFinished());
}

}  // namespace
}  // namespace pelorino
