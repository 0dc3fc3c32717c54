#pragma once

#include "ForkedChild.h"

namespace pelorino {

/// Keeps background threads out of code that must not run while the process exits: closures of the
/// host, and libraries that tear down their own state at exit.
///
/// From the first entry on, `exit` (and a return from `main`) closes the gate: a thread that enters
/// afterwards sleeps until the process has ended, and exit waits a short, bounded time for those
/// inside. A thread that calls exit from inside does not wait for itself, and may still enter
/// afterwards. `_exit` and `quick_exit` destroy nothing and do not close the gate.
class ExitGate {
 public:
  /// Held while inside. Re-entrant. Keep the work inside short. Do not enter while holding a lock
  /// that the exiting thread may need.
  class Pass {
   public:
    Pass();
    ~Pass();
    Pass(const Pass&) = delete;
    Pass& operator=(const Pass&) = delete;

   private:
    const ForkedChild::HostCode hostCode_;
  };

  /// The same for a thread that may be the host's: if the gate is closed, it stays outside and goes
  /// on. If it slept, an exit that joins it would hang.
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

  /// Does nothing while the gate is open. Afterwards it returns on the exiting thread only.
  static void parkIfClosed() noexcept;
};

}  // namespace pelorino
