#pragma once

#include <mutex>
#include <string>
#include <utility>

namespace pelorino {

/// A serial queue that callers use synchronously only: the block runs on the caller's thread, one
/// at a time. A call from inside a block of the same queue runs at once.
class SynchronousQueue {
 public:
  explicit SynchronousQueue(std::string label) : label_(std::move(label)) {}

  /// An exception of the block goes to the caller.
  template <class Work>
  decltype(auto) sync(Work&& work) {
    const std::lock_guard lock(mutex_);
    return std::forward<Work>(work)();
  }

  [[nodiscard]] const std::string& label() const { return label_; }

 private:
  std::string label_;
  std::recursive_mutex mutex_;
};

}  // namespace pelorino
