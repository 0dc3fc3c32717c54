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
constinit std::atomic<unsigned> begun{0};
constinit std::atomic<unsigned> ended{0};
constinit thread_local bool isLibraryThread = false;
constinit thread_local sigset_t hostSignals{};
constinit thread_local int depthOfHostCode = 0;

void beginFork() {
  begun.fetch_add(1);
}

void endFork() {
  ended.fetch_add(1);
}

/// Between fork and the host's next step; other threads may have held any lock.
void enterChild() {
  forked.store(true, std::memory_order_relaxed);
  LockDescriptors::closeAll();
  if (isLibraryThread) pthread_sigmask(SIG_SETMASK, &hostSignals, nullptr);
}

}  // namespace

void ForkedChild::arm() {
  // Two threads may both do it, which is harmless; neither goes on before it is done.
  if (armed.load(std::memory_order_acquire)) return;
  // Without memory for it a forked child is not noticed; there is no remedy, and no thread either.
  if (pthread_atfork(beginFork, endFork, enterChild) == 0)
    armed.store(true, std::memory_order_release);
}

bool ForkedChild::isHere() noexcept {
  return forked.load(std::memory_order_relaxed);
}

void ForkedChild::markLibraryThread(const sigset_t& signalsOfHost) noexcept {
  isLibraryThread = true;
  hostSignals = signalsOfHost;
}

std::optional<sigset_t> ForkedChild::signalsOfHost() noexcept {
  return isLibraryThread ? std::optional(hostSignals) : std::nullopt;
}

ForkedChild::HostCode::HostCode() noexcept {
  ++depthOfHostCode;
}

ForkedChild::HostCode::~HostCode() {
  if (--depthOfHostCode == 0 && isHere() && isLibraryThread) ::_exit(EXIT_SUCCESS);
}

unsigned ForkedChild::forksBegun() noexcept {
  return begun.load();
}

unsigned ForkedChild::forksEnded() noexcept {
  return ended.load();
}

}  // namespace pelorino
