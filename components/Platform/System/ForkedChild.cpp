#include "ForkedChild.h"

#include <pthread.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>

#include "LockDescriptors.h"

namespace pelorino {
namespace {

constinit std::atomic<bool> armed{false};
constinit std::atomic<bool> forked{false};
constinit thread_local bool isLibraryThread = false;

/// Between fork and the host's next step; other threads may have held any lock.
void enterChild() {
  forked.store(true, std::memory_order_relaxed);
  LockDescriptors::closeAll();
}

}  // namespace

void ForkedChild::arm() {
  // Two threads may both do it, which is harmless; neither goes on before it is done.
  if (armed.load(std::memory_order_acquire)) return;
  // Without memory for it a forked child is not noticed; there is no remedy, and no thread either.
  if (pthread_atfork(nullptr, nullptr, enterChild) == 0)
    armed.store(true, std::memory_order_release);
}

bool ForkedChild::isHere() noexcept {
  return forked.load(std::memory_order_relaxed);
}

void ForkedChild::markLibraryThread() noexcept {
  isLibraryThread = true;
}

void ForkedChild::endStrayThread() noexcept {
  if (isHere() && isLibraryThread) ::_exit(EXIT_SUCCESS);
}

}  // namespace pelorino
