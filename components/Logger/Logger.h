#pragma once

#include <pelorino/PLRLogLevel.h>

#include <concepts>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace pelorino {

/// The only outlet of the library's messages. It prints nothing itself: a line whose level passes
/// goes to the closure that the host has set, on the thread that writes the line.
///
/// Threads: all operations from any thread. Process-wide; outlives everything.
class Logger final {
 public:
  using EngineClosure = std::function<void(PLRLogLevel, const std::string&)>;
  using Closure = std::function<void(const std::string&)>;

  Logger() = delete;

  /// The most detailed level that passes. `error` at the start.
  [[nodiscard]] static PLRLogLevel logLevel() noexcept;
  static void setLogLevel(PLRLogLevel level) noexcept;

  /// Receives the level and the line: the level's name, one blank and the message.
  [[nodiscard]] static EngineClosure engineLoggerMessageClosure();
  static void setEngineLoggerMessageClosure(EngineClosure closure);

  /// Kept for the host only; no line is written to it.
  [[nodiscard]] static Closure loggerMessageClosure();
  static void setLoggerMessageClosure(Closure closure);

  [[nodiscard]] static bool passes(PLRLogLevel level) noexcept { return level <= logLevel(); }

  static void writeLog(PLRLogLevel level, std::string_view message) {
    if (passes(level)) deliver(level, message);
  }

  /// Builds the message only when the level passes.
  template <std::invocable MakeMessage>
  static void writeLog(PLRLogLevel level, MakeMessage&& makeMessage) {
    if (passes(level)) deliver(level, std::forward<MakeMessage>(makeMessage)());
  }

 private:
  static void deliver(PLRLogLevel level, std::string_view message);
};

}  // namespace pelorino
