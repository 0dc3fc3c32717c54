#pragma once

#include "ForkedChild.h"

namespace pelorino {

/// Keeps background threads out of code that must not run while the process exits: closures of the
/// host, and libraries that tear down their own state at exit.
///
/// From the first entry on, `exit` (and a return from `main`) closes the gate: a thread that wants
/// in afterwards sleeps until the process is gone, and exit waits a short, bounded time for those
/// inside. The thread that itself calls exit from inside does not wait for itself, and may still
/// enter afterwards. `_exit` and `quick_exit` tear nothing down and leave the gate alone.
class ExitGate {
 public:
  /// Held while inside. Re-entrant. Keep what runs inside short. Not taken while a lock is held
  /// that the exiting thread may want.
  class Pass {
   public:
    Pass();
    ~Pass();
    Pass(const Pass&) = delete;
    Pass& operator=(const Pass&) = delete;

   private:
    const ForkedChild::HostCode hostCode_;
  };

  /// The same for a thread that may be the host's: once the gate has closed it stays outside and
  /// goes on. Put to sleep, it would hang an exit that joins it.
  class TryPass {
   public:
    TryPass();
    ~TryPass();
    TryPass(const TryPass&) = delete;
    TryPass& operator=(const TryPass&) = delete;

    [[nodiscard]] bool isInside() const { return isInside_; }

   private:
    const ForkedChild::HostCode hostCode_;
    const bool isInside_;
  };

  /// Registers the gate with the process's exit handlers once more, so that it closes before
  /// whatever was registered or constructed until now is torn down.
  static void arm();

  /// True from the moment the gate has closed, for good.
  [[nodiscard]] static bool isClosed() noexcept;

  /// Does nothing while the gate is open. Afterwards it does not return, but on the exiting thread.
  static void parkIfClosed() noexcept;
};

}  // namespace pelorino
