#pragma once

#include <pelorino/PLRIdentifiersListener.h>

#include <memory>

#include "HostCode.h"
#include "LogicBroadcasterProtocol.h"
#include "ModuleFront.h"

namespace pelorino {

/// Tells the host's listener the identifiers that the logic gets from the backend.
///
/// Threads: set the listener from any thread; it is called on the incomeQueue. Set the logic on the
/// incomeQueue.
/// Errors:  an exception of the listener is logged.
class AnalyticsObserver final : public ModuleFront<LogicBroadcasterProtocol> {
 public:
  /// Replaces the listener; null removes it. If the identifier is already known, the listener is
  /// called with it in a block of its own.
  void addIdentifiersListener(std::shared_ptr<PLRIdentifiersListener> identifiersListener);

  /// Sets the logic, which is borrowed and calls this object. Before this object is destroyed, set
  /// null or destroy the logic.
  void addLogicBroadcaster(LogicBroadcasterProtocol* logicBroadcaster);

 private:
  void tellListener(std::int64_t pelorinoId) const;

  HostSlot<std::shared_ptr<PLRIdentifiersListener>> identifiersListener_;
};

}  // namespace pelorino
