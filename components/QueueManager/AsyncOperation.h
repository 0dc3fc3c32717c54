#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace pelorino {

/// Interface only: nothing of the library uses it yet. A piece of work that goes on after start()
/// has returned, and ends when it says so.
///
/// The work sets `state` to finished when it is done, and only after start() has returned: start()
/// itself leaves the operation executing.
///
/// Threads: none of its own and no lock; the owner hands it from thread to thread.
class AsyncOperation {
 public:
  enum class State { ready, executing, finished };
  enum class Change { will, did };
  using ExecutionBlock = std::function<void(AsyncOperation&)>;
  /// Told of a change of state, by the key of the state: "isReady", "isExecuting", "isFinished".
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

  /// The operation is finished, whatever its work does from here on.
  void cancel();

 protected:
  /// The work of a subclass, run ahead of the block.
  virtual void execute() {}

 private:
  std::string name_;
  ExecutionBlock executionBlock_;
  Observer observer_;
  State state_ = State::ready;
  bool cancelled_ = false;
};

}  // namespace pelorino
