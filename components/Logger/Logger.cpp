#include "Logger.h"

#include <atomic>
#include <exception>
#include <memory>

#include "ExitGate.h"
#include "ForkedChild.h"
#include "Guarded.h"

namespace pelorino {
namespace {

struct State {
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

State& state() {
  return lasting.state;
}

template <class Closure>
std::shared_ptr<const Closure> shared(Closure closure) {
  if (!closure) return nullptr;
  return std::make_shared<const Closure>(std::move(closure));
}

std::shared_ptr<const Logger::EngineClosure> engineClosure() {
  const auto& slot = state().engineClosure;
  return ForkedChild::isHere() ? slot.tryGet().value_or(nullptr) : slot.get();
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
  state().engineClosure.set(shared(std::move(closure)));
}

Logger::Closure Logger::loggerMessageClosure() {
  const auto closure = state().closure.get();
  return closure ? *closure : Closure{};
}

void Logger::setLoggerMessageClosure(Closure closure) {
  state().closure.set(shared(std::move(closure)));
}

void Logger::deliver(PLRLogLevel level, std::string_view message) {
  const auto closure = engineClosure();
  if (!closure) return;
  std::string line = description(level);
  line.reserve(line.size() + 1 + message.size());
  line += ' ';
  line += message;
  const ExitGate::TryPass pass;
  if (!pass.isInside()) return;
  try {
    (*closure)(level, line);
  } catch (...) {  // NOLINT(bugprone-empty-catch)
    // The host's own exception has nowhere to go: the closure is the only outlet there is.
  }
  ForkedChild::endStrayThread();
}

}  // namespace pelorino
