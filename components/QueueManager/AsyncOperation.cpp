#include "AsyncOperation.h"

#include <utility>

namespace pelorino {
namespace {

constexpr std::string_view key(AsyncOperation::State state) {
  switch (state) {
    case AsyncOperation::State::ready:
      return "isReady";
    case AsyncOperation::State::executing:
      return "isExecuting";
    case AsyncOperation::State::finished:
      return "isFinished";
  }
  return "";
}

}  // namespace

AsyncOperation::AsyncOperation(std::string name, ExecutionBlock executionBlock)
    : name_(std::move(name)), executionBlock_(std::move(executionBlock)) {}

void AsyncOperation::setState(State state) {
  const std::string_view oldKey = key(state_);
  const std::string_view newKey = key(state);
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
