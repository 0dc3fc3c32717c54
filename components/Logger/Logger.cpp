#include "Logger.h"

#include <atomic>
#include <chrono>
#include <exception>
#include <memory>
#include <utility>

#include "ExitGate.h"
#include "ForkedChild.h"
#include "Guarded.h"
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
  Guarded<std::shared_ptr<const Logger::EngineClosure>> engineClosure;
  Guarded<std::shared_ptr<const Logger::Closure>> closure;
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

template <class Closure>
std::shared_ptr<const Closure> shared(Closure closure) {
  if (!closure) return nullptr;
  return std::make_shared<const Closure>(std::move(closure));
}

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

/// In a forked child a thread that is gone may have taken the lock of the slot, or, inside the
/// closure, one of the host's own.
std::shared_ptr<const Logger::EngineClosure> engineClosure() {
  const auto& slot = state().engineClosure;
  if (!ForkedChild::isHere()) return slot.get();
  return isOtherThreadWriting() ? nullptr : slot.tryGet().value_or(nullptr);
}

/// Until no other thread runs the closure any more. Not from within one.
void waitForEndOf(const std::shared_ptr<const Logger::EngineClosure>& closure) {
  if (ownWriting > 0) return;
  pollFor(closurePatience, closurePollInterval, [&] { return closure.use_count() <= 1; });
}

}  // namespace

PLRLogLevel Logger::logLevel() noexcept {
  return state().level.load(std::memory_order_relaxed);
}

void Logger::setLogLevel(PLRLogLevel level) noexcept {
  state().level.store(level, std::memory_order_relaxed);
}

Logger::EngineClosure Logger::engineLoggerMessageClosure() {
  const auto closure = state().engineClosure.get();
  return closure ? *closure : EngineClosure{};
}

void Logger::setEngineLoggerMessageClosure(EngineClosure closure) {
  ExitGate::arm();
  auto former = shared(std::move(closure));
  state().engineClosure.update([&](auto& current) { std::swap(current, former); });
  waitForEndOf(former);
}

Logger::Closure Logger::loggerMessageClosure() {
  const auto closure = state().closure.get();
  return closure ? *closure : Closure{};
}

void Logger::setLoggerMessageClosure(Closure closure) {
  state().closure.set(shared(std::move(closure)));
}

void Logger::deliver(PLRLogLevel level, std::string_view message) {
  auto closure = engineClosure();
  if (!closure) return;
  std::string line = description(level);
  line.reserve(line.size() + 1 + message.size());
  line += ' ';
  line += message;
  const Writing writing;
  const ExitGate::TryPass pass;
  if (!pass.isInside()) return;
  try {
    (*closure)(level, line);
  } catch (...) {  // NOLINT(bugprone-empty-catch)
    // The host's own exception has nowhere to go: the closure is the only outlet there is.
  }
  closure = nullptr;  // Inside: it may be the last reference to what the host has put in there.
}

}  // namespace pelorino
