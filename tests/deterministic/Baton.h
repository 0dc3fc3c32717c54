#pragma once

#include <condition_variable>
#include <mutex>

namespace pelorino {

/// The right to run, handed from thread to thread. What one thread wrote before give() is seen by
/// the thread that returns from take().
class Baton final {
 public:
  void give() {
    const std::lock_guard lock(mutex_);
    given_ = true;
    arrived_.notify_one();
  }

  void take() {
    std::unique_lock lock(mutex_);
    arrived_.wait(lock, [this] { return given_; });
    given_ = false;
  }

 private:
  std::mutex mutex_;
  std::condition_variable arrived_;
  bool given_ = false;
};

}  // namespace pelorino
