#pragma once

#include <exception>
#include <string>
#include <utility>

#include "CancellationHeldBack.h"
#include "Logger.h"

namespace pelorino {

/// From here on, calls are refused in processes that are forked off.
void refuseCallsAfterFork();

/// True, and at the first time a log line, in such a process.
[[nodiscard]] bool isRefusedAfterFork();

/// Runs a public operation, but not in a forked child. Whatever is thrown in it, be it for want of
/// memory or by a handler that is copied, costs this one call and a log line: nothing reaches the
/// host.
template <class Work>
void enter(const char* operation, Work&& work) noexcept {
  const CancellationHeldBack heldBack;
  try {
    try {
      if (isRefusedAfterFork()) return;
      std::forward<Work>(work)();
    } catch (const std::exception& error) {
      Logger::writeLog(PLRLogLevel::error, [&] {
        return std::string("The call of ") + operation + " was dropped: " + error.what();
      });
    } catch (...) {
      Logger::writeLog(PLRLogLevel::error,
                       [&] { return std::string("The call of ") + operation + " was dropped"; });
    }
  } catch (...) {  // NOLINT(bugprone-empty-catch)
    // No memory even for the line.
  }
}

/// The same for an operation with a result.
template <class Value, class Work>
Value enter(const char* operation, Value fallback, Work&& work) noexcept {
  enter(operation, [&] { fallback = std::forward<Work>(work)(); });
  return fallback;
}

}  // namespace pelorino
