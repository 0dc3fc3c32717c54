#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "ExceptionOutlet.h"
#include "Executor.h"
#include "MainThread.h"
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

/// Work on real threads and real time.
class RealExecutor final : public Executor {
 public:
  [[nodiscard]] std::unique_ptr<SerialQueue> makeQueue(std::string label) override;
  [[nodiscard]] std::unique_ptr<Semaphore> makeSemaphore() override;
  SerialQueue& mainQueue() override { return main_; }
  [[nodiscard]] std::unique_ptr<Timer> repeat(std::chrono::milliseconds period,
                                              std::chrono::milliseconds tolerance,
                                              Block tick) override;
  [[nodiscard]] std::unique_ptr<Timer> after(std::chrono::milliseconds delay, Block block) override;
  void setExceptionHandler(ExceptionHandler handler) override;

 private:
  const std::shared_ptr<ExceptionOutlet> outlet_ = std::make_shared<ExceptionOutlet>();
  MainThread main_{outlet_};
};

}  // namespace pelorino
