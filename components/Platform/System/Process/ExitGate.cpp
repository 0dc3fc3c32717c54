#include "ExitGate.h"

#include <unistd.h>

#include <atomic>
#include <cstdlib>

#include "ForkedChild.h"
#include "Polling.h"

namespace pelorino {
namespace {

using namespace std::chrono_literals;

/// How long exit waits for threads inside. What runs inside takes microseconds, a TLS handshake a
/// few milliseconds; a closure of the host that hangs must not make the exit hang.
constexpr auto exitPatience = 200ms;
constexpr auto exitPollInterval = 1ms;

// All of these have constant initialisers and no destructors: they are there before the first and
// after the last static object of the process.
constinit std::atomic<bool> closed{false};
constinit std::atomic<bool> registered{false};
constinit std::atomic<int> threadsInside{0};
constinit thread_local int depth = 0;
constinit thread_local bool isExiting = false;

[[noreturn]] void sleepForever() noexcept {
  for (;;) ::pause();
}

void closeGate() {
  isExiting = true;
  // Armed twice, it runs twice; whoever is inside by then has been waited for.
  if (closed.exchange(true, std::memory_order_seq_cst)) return;
  // The threads that were inside at the fork are not in this process.
  if (ForkedChild::isHere()) return;
  const int ownPass = depth > 0 ? 1 : 0;
  pollFor(exitPatience, exitPollInterval,
          [=] { return threadsInside.load(std::memory_order_seq_cst) <= ownPass; });
}

/// False, and still outside, when the gate has closed.
bool enter() {
  if (depth == 0) {
    if (!registered.load(std::memory_order_acquire)) ExitGate::arm();
    // Count first, look second, while exit closes first and counts second: one of the two sees the
    // other. Both need the total order of seq_cst.
    threadsInside.fetch_add(1, std::memory_order_seq_cst);
    if (closed.load(std::memory_order_seq_cst) && !isExiting) {
      threadsInside.fetch_sub(1, std::memory_order_seq_cst);
      return false;
    }
  }
  ++depth;
  return true;
}

void leave() {
  if (--depth == 0) threadsInside.fetch_sub(1, std::memory_order_seq_cst);
}

}  // namespace

void ExitGate::arm() {
  // The list of exit handlers has a lock, which may have been taken at the fork.
  if (ForkedChild::isHere()) return;
  // A failure leaves the gate as it was armed before; there is no memory then, and no remedy.
  if (std::atexit(closeGate) == 0) registered.store(true, std::memory_order_release);
}

bool ExitGate::isClosed() noexcept {
  return closed.load(std::memory_order_acquire);
}

void ExitGate::parkIfClosed() noexcept {
  if (isClosed() && !isExiting) sleepForever();
}

ExitGate::Pass::Pass() {
  if (!enter()) sleepForever();
}

ExitGate::Pass::~Pass() {
  leave();
}

ExitGate::TryPass::TryPass() : isInside_(enter()) {}

ExitGate::TryPass::~TryPass() {
  if (isInside_) leave();
}

}  // namespace pelorino
