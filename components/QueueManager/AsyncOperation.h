#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace pelorino {

/// Interface only: nothing in the library uses it. Work that goes on after start() has returned,
/// and that says itself when it has ended.
///
/// The work sets `state` to finished when it is done, and only after start() has returned: start()
/// itself leaves the operation executing.
///
/// Threads: one at a time; it has no lock.
class AsyncOperation {
 public:
  enum class State { ready, executing, finished };
  enum class Change { will, did };
  using ExecutionBlock = std::function<void(AsyncOperation&)>;
  /// Called for a change of state with its key: "isReady", "isExecuting" or "isFinished".
  using Observer = std::function<void(Change, std::string_view key)>;

  AsyncOperation(std::string name, ExecutionBlock executionBlock);
  virtual ~AsyncOperation() = default;
  AsyncOperation(const AsyncOperation&) = delete;
  AsyncOperation& operator=(const AsyncOperation&) = delete;

  [[nodiscard]] const std::string& name() const { return name_; }
  [[nodiscard]] State state() const { return state_; }
  [[nodiscard]] bool isReady() const { return state_ == State::ready; }
  [[nodiscard]] bool isExecuting() const { return state_ == State::executing; }
  [[nodiscard]] bool isFinished() const { return state_ == State::finished; }
  [[nodiscard]] bool isCancelled() const { return cancelled_; }
  [[nodiscard]] static constexpr bool isAsynchronous() { return true; }

  void setObserver(Observer observer) { observer_ = std::move(observer); }

  /// Tells the observer: will-change for the new state, then for the old one, and did-change for
  /// the old one, then for the new one.
  void setState(State state);

  /// Runs execute() and the block, unless cancelled before; then the operation is executing.
  void start();

  /// The operation counts as finished from here on, whatever its work does.
  void cancel();

 protected:
  /// The work of a subclass; it runs before the block.
  virtual void execute() {}

 private:
  std::string name_;
  ExecutionBlock executionBlock_;
  Observer observer_;
  State state_ = State::ready;
  bool cancelled_ = false;
};

}  // namespace pelorino
