#pragma once

#include <functional>
#include <utility>

#include "HostCode.h"

namespace pelorino {

/// A closure that the host passes with a call, such as a completion handler.
template <class Signature>
using HostClosure = HostHeld<std::function<Signature>>;

/// Writes the log line for an exception of a completion handler; null if it is no std::exception.
void logFailedHandler(const char* what);

/// Calls a closure of the host, if there is one. An exception from it is logged.
template <class Signature, class... Arguments>
void callHost(const std::function<Signature>& closure, Arguments&&... arguments) {
  if (!closure) return;
  runHostCode([&] { closure(std::forward<Arguments>(arguments)...); }, logFailedHandler);
}

template <class Signature, class... Arguments>
void callHost(const HostClosure<Signature>& closure, Arguments&&... arguments) {
  callHost(closure.handle(), std::forward<Arguments>(arguments)...);
}

}  // namespace pelorino
