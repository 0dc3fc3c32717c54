#pragma once

#include <exception>
#include <utility>

#include "CancellationHeldBack.h"

namespace pelorino {

/// From here on, calls are refused in processes that are forked off.
void refuseCallsAfterFork();

/// True in such a process. The first time, it also writes a log line.
[[nodiscard]] bool isRefusedAfterFork();

/// Writes the log line for a call that ended with an exception. `what` is null for one that is no
/// std::exception.
void logDroppedCall(const char* operation, const char* what) noexcept;

/// Runs a public operation, but not in a forked child. An exception, for example for lack of memory
/// or from the copy of a handler, costs this one call and is logged. It never reaches the host.
template <class Work>
void enter(const char* operation, Work&& work) noexcept {
  const CancellationHeldBack heldBack;
  try {
    if (isRefusedAfterFork()) return;
    std::forward<Work>(work)();
  } catch (const std::exception& error) {
    logDroppedCall(operation, error.what());
  } catch (...) {
    logDroppedCall(operation, nullptr);
  }
}

/// The same for an operation with a result.
template <class Value, class Work>
Value enter(const char* operation, Value fallback, Work&& work) noexcept {
  enter(operation, [&] { fallback = std::forward<Work>(work)(); });
  return fallback;
}

}  // namespace pelorino
