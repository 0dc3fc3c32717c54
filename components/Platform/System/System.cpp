#include "System.h"

#include <atomic>

namespace pelorino {
namespace {

constinit std::atomic<System*> inUse{nullptr};

}  // namespace

System& System::current() {
  if (System* system = inUse.load(std::memory_order_acquire)) return *system;
  System* expected = nullptr;
  System& made = real();
  return inUse.compare_exchange_strong(expected, &made, std::memory_order_acq_rel,
                                       std::memory_order_acquire)
             ? made
             : *expected;
}

void System::install(System& system) {
  inUse.store(&system, std::memory_order_release);
}

}  // namespace pelorino
