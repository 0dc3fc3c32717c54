#include "RealExecutor.h"

#include <algorithm>
#include <utility>

#include "RealSemaphore.h"

namespace pelorino {

using std::chrono::milliseconds;

std::unique_ptr<SerialQueue> RealExecutor::makeQueue(std::string label) {
  return std::make_unique<RealQueue>(std::move(label), outlet_);
}

std::unique_ptr<Semaphore> RealExecutor::makeSemaphore() {
  return std::make_unique<RealSemaphore>();
}

std::unique_ptr<Timer> RealExecutor::repeat(milliseconds period, milliseconds tolerance,
                                            Block tick) {
  const milliseconds raised = std::max(period, minimumTimerPeriod);
  return main_.startTimer(raised, raised, tolerance, std::move(tick));
}

std::unique_ptr<Timer> RealExecutor::after(milliseconds delay, Block block) {
  return main_.startTimer(delay, milliseconds{0}, milliseconds{0}, std::move(block));
}

void RealExecutor::setExceptionHandler(ExceptionHandler handler) {
  outlet_->setHandler(std::move(handler));
}

}  // namespace pelorino
