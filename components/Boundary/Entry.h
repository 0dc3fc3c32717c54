#pragma once

#include <exception>
#include <utility>

#include "CancellationHeldBack.h"

namespace pelorino {

/// From here on, calls are refused in processes that are forked off.
void refuseCallsAfterFork();

/// True, and at the first time a log line, in such a process.
[[nodiscard]] bool isRefusedAfterFork();

/// Writes the log line for a call that ended with an exception; `what` is null where it had no
/// words.
void logDroppedCall(const char* operation, const char* what) noexcept;

/// Runs a public operation, but not in a forked child. Whatever is thrown in it, be it for want of
/// memory or by a handler that is copied, costs this one call and a log line: nothing reaches the
/// host.
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
