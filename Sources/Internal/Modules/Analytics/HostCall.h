#pragma once

#include <exception>
#include <string>
#include <utility>

#include "ExitGate.h"
#include "Logger.h"

namespace pelorino {

/// Calls a closure of the host, and ends here what it throws.
template <class Handler, class... Arguments>
void callGuarded(const Handler& handler, Arguments&&... arguments) {
  try {
    handler(std::forward<Arguments>(arguments)...);
  } catch (const std::exception& error) {
    Logger::writeLog(PLRLogLevel::error, [&] {
      return std::string("A completion handler of the host ended with an error: ") + error.what();
    });
  } catch (...) {
    Logger::writeLog(PLRLogLevel::error, "A completion handler of the host ended with an error");
  }
}

/// Calls a closure of the host, if there is one, on a thread of the library. It is not called once
/// the process has begun to exit: what it refers to may be gone.
template <class Handler, class... Arguments>
void callHost(const Handler& handler, Arguments&&... arguments) {
  if (!handler) return;
  const ExitGate::Pass pass;
  callGuarded(handler, std::forward<Arguments>(arguments)...);
}

/// The same on the thread of the host that asks.
template <class Handler, class... Arguments>
void callHostAtOnce(const Handler& handler, Arguments&&... arguments) {
  if (!handler) return;
  const ExitGate::TryPass pass;
  if (pass.isInside()) callGuarded(handler, std::forward<Arguments>(arguments)...);
}

}  // namespace pelorino
