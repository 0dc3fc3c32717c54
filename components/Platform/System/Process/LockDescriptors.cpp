#include "LockDescriptors.h"

#include <unistd.h>

#include <array>
#include <atomic>

namespace pelorino {
namespace {

// A process has one store, and a second one for as long as the first is still being left.
constexpr std::size_t mostLocks = 64;
constexpr int none = -1;

/// One more than the descriptor, so that all zeroes are an empty table.
constinit std::array<std::atomic<int>, mostLocks> slots{};

bool replace(int former, int next) noexcept {
  for (auto& slot : slots) {
    int expected = former + 1;
    if (slot.compare_exchange_strong(expected, next + 1)) return true;
  }
  return false;
}

}  // namespace

bool LockDescriptors::add(int descriptor) noexcept {
  return replace(none, descriptor);
}

void LockDescriptors::remove(int descriptor) noexcept {
  replace(descriptor, none);
}

void LockDescriptors::closeAll() noexcept {
  for (auto& slot : slots) {
    const int descriptor = slot.exchange(none + 1) - 1;
    if (descriptor != none) ::close(descriptor);
  }
}

}  // namespace pelorino
