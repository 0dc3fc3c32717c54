#pragma once

#include <chrono>
#include <thread>

namespace pelorino {

/// Looks every `interval` whether `isOver`, for `patience` at most. For what is over in no time
/// nearly always, and cannot tell.
template <class IsOver>
void pollFor(std::chrono::milliseconds patience, std::chrono::microseconds interval,
             IsOver isOver) {
  const auto end = std::chrono::steady_clock::now() + patience;
  while (!isOver() && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(interval);
  }
}

}  // namespace pelorino
