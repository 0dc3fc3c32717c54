#pragma once

#include <chrono>
#include <thread>

namespace pelorino {

/// Checks `isOver` every `interval`, for at most `patience`. For something that cannot signal its
/// end and nearly always ends at once.
template <class IsOver>
void pollFor(std::chrono::milliseconds patience, std::chrono::microseconds interval,
             IsOver isOver) {
  const auto end = std::chrono::steady_clock::now() + patience;
  while (!isOver() && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(interval);
  }
}

}  // namespace pelorino
