#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>

#include "Executor.h"

namespace pelorino {

class RealSemaphore final : public Semaphore {
 public:
  void signal() override;
  [[nodiscard]] bool wait(std::chrono::milliseconds timeout) override;

 private:
  std::mutex mutex_;
  std::condition_variable signalled_;
  std::uint64_t signals_ = 0;  // Guarded by mutex_.
};

}  // namespace pelorino
