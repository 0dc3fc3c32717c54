#pragma once

#include <cstdint>

#include "Executor.h"
#include "Mutex.h"

namespace pelorino {

class RealSemaphore final : public Semaphore {
 public:
  void signal() override;
  [[nodiscard]] bool wait(std::chrono::milliseconds timeout) override;

 private:
  Mutex mutex_;
  Condition signalled_;
  std::uint64_t signals_ PLR_GUARDED_BY(mutex_) = 0;
};

}  // namespace pelorino
