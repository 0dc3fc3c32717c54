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
constinit thread_local bool onLibraryThread = false;
constinit thread_local sigset_t hostSignals{};
constinit thread_local int depthOfHostCode = 0;

/// Between fork and the host's next step; other threads may have held any lock.
void enterChild() {
  forked.store(true, std::memory_order_relaxed);
  LockDescriptors::closeAll();
  if (onLibraryThread) pthread_sigmask(SIG_SETMASK, &hostSignals, nullptr);
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

void ForkedChild::markLibraryThread(const sigset_t& signalsOfHost) noexcept {
  onLibraryThread = true;
  hostSignals = signalsOfHost;
}

bool ForkedChild::isLibraryThread() noexcept {
  return onLibraryThread;
}

std::optional<sigset_t> ForkedChild::signalsOfHost() noexcept {
  return onLibraryThread ? std::optional(hostSignals) : std::nullopt;
}

ForkedChild::HostCode::HostCode() noexcept {
  ++depthOfHostCode;
}

ForkedChild::HostCode::~HostCode() {
  if (--depthOfHostCode == 0 && isHere() && onLibraryThread) ::_exit(EXIT_SUCCESS);
}

}  // namespace pelorino
