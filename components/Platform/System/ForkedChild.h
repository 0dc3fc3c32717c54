#pragma once

namespace pelorino {

/// Tells a process that the host has forked off from the one in which the library works.
///
/// Such a child has a copy of everything and only the thread that called fork: queues have no
/// threads, locks may be held by nobody, and the database and the connections are the parent's. So
/// the library does nothing there; whoever may be called in a child asks first. A child that runs
/// another program, and one that was forked before the library had started, are none of these.
class ForkedChild final {
 public:
  ForkedChild() = delete;

  /// From here on a fork makes such a child. Callable any number of times.
  static void arm();

  /// True in such a child, for good. Costs one load.
  [[nodiscard]] static bool isHere() noexcept;

  /// Marks the calling thread as one of the library's own.
  static void markLibraryThread() noexcept;

  /// Called where a thread comes back from the host's code, and ahead of effects outside the
  /// process: when the host has forked in there, this thread is all that the child has, and what
  /// it was about to do is the parent's work. The child ends here, without exit handlers. Does
  /// nothing anywhere else.
  static void endStrayThread() noexcept;
};

}  // namespace pelorino
