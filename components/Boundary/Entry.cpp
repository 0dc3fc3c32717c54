#include "Entry.h"

#include <atomic>

#include "ForkedChild.h"

namespace pelorino {

void refuseCallsAfterFork() {
  ForkedChild::arm();
}

bool isRefusedAfterFork() {
  static constinit std::atomic<bool> isTold{false};
  if (!ForkedChild::isHere()) return false;
  if (!isTold.exchange(true)) {
    Logger::writeLog(PLRLogLevel::error,
                     "The library does not work in a forked process; calls are refused");
  }
  return true;
}

}  // namespace pelorino
