#include "Entry.h"

#include <atomic>
#include <string>

#include "ForkedChild.h"
#include "Logger.h"

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

void logDroppedCall(const char* operation, const char* what) noexcept {
  try {
    Logger::writeLog(PLRLogLevel::error, [&] {
      std::string line = std::string("The call of ") + operation + " was dropped";
      return what == nullptr ? line : line + ": " + what;
    });
  } catch (...) {  // NOLINT(bugprone-empty-catch)
    // No memory even for the line.
  }
}

}  // namespace pelorino
