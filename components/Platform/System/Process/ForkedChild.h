#pragma once

#include <csignal>
#include <optional>

namespace pelorino {

/// Tells a process that the host has forked off from the one in which the library works.
///
/// Such a child has a copy of everything and only the thread that called fork: queues have no
/// threads, locks may be held by nobody, and the database and the connections are the parent's. So
/// the library does nothing there; code that may be called in a child asks here first. A child that
/// runs another program, or that was forked before the library had started, does not count.
class ForkedChild final {
 public:
  ForkedChild() = delete;

  /// From here on a fork makes such a child. Callable any number of times.
  static void arm();

  /// True in such a child, for good. Costs one load.
  [[nodiscard]] static bool isHere() noexcept;

  /// Marks the calling thread as one of the library's own. A child that the host forks off on it
  /// gets back the signal mask that the host's threads have.
  static void markLibraryThread(const sigset_t& signalsOfHost) noexcept;

  [[nodiscard]] static bool isLibraryThread() noexcept;

  /// That mask, on a thread of the library; absent on one of the host.
  [[nodiscard]] static std::optional<sigset_t> signalsOfHost() noexcept;

  /// Held while a thread runs the host's code. If that code forks on a thread of the library, this
  /// is the child's only thread, and the work behind it is the parent's: the child exits when the
  /// outermost of these goes, without exit handlers.
  class HostCode {
   public:
    HostCode() noexcept;
    ~HostCode();
    HostCode(const HostCode&) = delete;
    HostCode& operator=(const HostCode&) = delete;
  };
};

}  // namespace pelorino
