#pragma once

#include <pelorino/PLRVerifyResponse.h>

#include "Backend.h"
#include "HostClosure.h"
#include "Receipt.h"
#include "Run.h"
#include "StateManager.h"

namespace pelorino {

/// Has the backend verify receipts. Keeps nothing, and asks once for each.
///
/// Threads: the incomeQueue only; the request and its answer run on the anticheatQueue.
class AntiCheatService final {
 public:
  using Handler = HostClosure<void(const PLRVerifyResponse&)>;

  AntiCheatService(Run& run, StateManager& stateManager, BackendProtocol& backend)
      : run_(run), stateManager_(stateManager), backend_(backend) {}

  /// Calls the handler once, whatever happens: `internalError` stands for an answer that cannot be
  /// used and for a library that has been torn down, `serverError` for a refusal of the backend.
  void receiveReceiptStatus(Receipt receipt, Handler completionHandler);

 private:
  Run& run_;
  StateManager& stateManager_;
  BackendProtocol& backend_;
};

}  // namespace pelorino
