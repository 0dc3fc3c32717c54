#include "Logger.h"

#include <atomic>
#include <chrono>
#include <utility>

#include "ForkedChild.h"
#include "HostCode.h"
#include "Polling.h"

namespace pelorino {
namespace {

using namespace std::chrono_literals;

/// How long the host waits for the end of the closure that it replaces. One takes microseconds; one
/// that hangs, or waits for the host, must not hang it.
constexpr auto closurePatience = 200ms;
constexpr auto closurePollInterval = 100us;

struct State {
  std::atomic<int> writers{0};  ///< Threads in the closure, each as often as it has entered it.
  std::atomic<PLRLogLevel> level{PLRLogLevel::error};
  HostSlot<Logger::EngineClosure> engineClosure;
  HostSlot<Logger::Closure> closure;
};

/// Never destroyed: lines may be written while the process exits. Not made on first use either: in
/// a forked child, the thread that was making it may be gone, and whoever asks would wait for ever.
union Lasting {
  constexpr Lasting() : state() {}
  ~Lasting() {}  // NOLINT(modernize-use-equals-default): that would be a deleted one.
  Lasting(const Lasting&) = delete;
  Lasting& operator=(const Lasting&) = delete;

  State state;
};
constinit Lasting lasting;
constinit thread_local int ownWriting = 0;

State& state() {
  return lasting.state;
}

using HeldClosure = HostSlot<Logger::EngineClosure>::Held;

class Writing {
 public:
  Writing() {
    state().writers.fetch_add(1, std::memory_order_relaxed);
    ++ownWriting;
  }
  ~Writing() {
    --ownWriting;
    state().writers.fetch_sub(1, std::memory_order_relaxed);
  }
  Writing(const Writing&) = delete;
  Writing& operator=(const Writing&) = delete;
};

bool isOtherThreadWriting() {
  return state().writers.load(std::memory_order_relaxed) > ownWriting;
}

/// In a forked child a thread that is gone may have taken, inside the closure, a lock of the
/// host's.
HeldClosure engineClosure() {
  if (ForkedChild::isHere() && isOtherThreadWriting()) return nullptr;
  return state().engineClosure.get();
}

/// Until no other thread runs the closure any more. Not from within one.
void waitForEndOf(const HeldClosure& closure) {
  if (ownWriting > 0) return;
  pollFor(closurePatience, closurePollInterval, [&] { return closure.use_count() <= 1; });
}

template <class Closure>
Closure copyOf(const HostSlot<Closure>& slot) {
  const auto held = slot.get();
  return held ? held->handle() : Closure{};
}

}  // namespace

PLRLogLevel Logger::logLevel() noexcept {
  return state().level.load(std::memory_order_relaxed);
}

void Logger::setLogLevel(PLRLogLevel level) noexcept {
  state().level.store(level, std::memory_order_relaxed);
}

Logger::EngineClosure Logger::engineLoggerMessageClosure() {
  return copyOf(state().engineClosure);
}

void Logger::setEngineLoggerMessageClosure(EngineClosure closure) {
  waitForEndOf(state().engineClosure.exchange(std::move(closure)));
}

Logger::Closure Logger::loggerMessageClosure() {
  return copyOf(state().closure);
}

void Logger::setLoggerMessageClosure(Closure closure) {
  state().closure.set(std::move(closure));
}

void Logger::deliver(PLRLogLevel level, std::string_view message) {
  const auto write = [&] {
    auto closure = engineClosure();
    if (!closure) return;
    std::string line = description(level);
    line.reserve(line.size() + 1 + message.size());
    line += ' ';
    line += message;
    const Writing writing;
    closure->handle()(level, line);
    closure = nullptr;  // While this counts as writing, and inside: it may be the last reference.
  };
  // The host's own exception has nowhere to go: the closure is the only outlet there is.
  runHostCode<HostEntry::neverSleeping>(write, [](const char*) {});
}

}  // namespace pelorino
