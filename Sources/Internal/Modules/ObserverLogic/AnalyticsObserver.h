#pragma once

#include <pelorino/PLRIdentifiersListener.h>

#include <memory>

#include "HostCode.h"
#include "LogicBroadcasterProtocol.h"
#include "ModuleFront.h"

namespace pelorino {

/// Links the host's identifiers listener to the logic.
///
/// Threads: the listener is set from any thread and called on the incomeQueue; the logic is given
/// on the incomeQueue.
class AnalyticsObserver final : public ModuleFront<LogicBroadcasterProtocol> {
 public:
  /// Replaces the listener; none clears it. It hears at once of an identifier already known.
  void addIdentifiersListener(std::shared_ptr<PLRIdentifiersListener> identifiersListener);

  /// The logic goes before this does, or is taken away by null.
  void addLogicBroadcaster(LogicBroadcasterProtocol* logicBroadcaster);

 private:
  void tellListener(std::int64_t pelorinoId) const;

  HostSlot<std::shared_ptr<PLRIdentifiersListener>> identifiersListener_;
};

}  // namespace pelorino
