#include "AsyncOperation.h"

#include <array>
#include <utility>

namespace pelorino {

AsyncOperation::AsyncOperation(std::string name, ExecutionBlock executionBlock)
    : name_(std::move(name)), executionBlock_(std::move(executionBlock)) {}

void AsyncOperation::setState(State state) {
  constexpr std::array<std::string_view, 3> keys = {"isReady", "isExecuting", "isFinished"};
  const std::string_view oldKey = keys[static_cast<std::size_t>(state_)];
  const std::string_view newKey = keys[static_cast<std::size_t>(state)];
  if (observer_) {
    observer_(Change::will, newKey);
    observer_(Change::will, oldKey);
  }
  state_ = state;
  if (observer_) {
    observer_(Change::did, oldKey);
    observer_(Change::did, newKey);
  }
}

void AsyncOperation::start() {
  if (cancelled_) {
    setState(State::finished);
    return;
  }
  execute();
  if (executionBlock_) executionBlock_(*this);
  setState(State::executing);
}

void AsyncOperation::cancel() {
  cancelled_ = true;
  setState(State::finished);
}

}  // namespace pelorino
