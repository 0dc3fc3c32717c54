#pragma once

#include <exception>
#include <string>
#include <utility>

#include "ExitGate.h"
#include "Logger.h"

namespace pelorino {

/// Calls a closure of the host, if there is one. What it throws ends here, and it is not called
/// once the process has begun to exit: what it refers to may be gone.
template <class Handler, class... Arguments>
void callHost(const Handler& handler, Arguments&&... arguments) {
  if (!handler) return;
  const ExitGate::Pass pass;
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

}  // namespace pelorino
