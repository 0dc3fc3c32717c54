#pragma once

namespace pelorino {

/// The open descriptors that carry this process's file locks. A forked child inherits them, and
/// with them the locks: the parent's would outlive the parent. So the child closes its copies.
///
/// Threads: any, without a lock.
class LockDescriptors final {
 public:
  LockDescriptors() = delete;

  /// False when there are too many; the caller then must not keep the lock.
  [[nodiscard]] static bool add(int descriptor) noexcept;
  static void remove(int descriptor) noexcept;

  /// Right after fork, in the child: without locks and without memory.
  static void closeAll() noexcept;
};

}  // namespace pelorino
