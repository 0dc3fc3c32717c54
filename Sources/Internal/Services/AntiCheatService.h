#pragma once

#include <pelorino/PLRVerifyResponse.h>

#include "Backend.h"
#include "HostClosure.h"
#include "Receipt.h"
#include "Run.h"
#include "StateManager.h"

namespace pelorino {

/// Asks the backend to verify receipts, once for each. Stores nothing.
///
/// Threads: the incomeQueue only; the request and the handler run on the anticheatQueue.
class AntiCheatService final {
 public:
  using Handler = HostClosure<void(const PLRVerifyResponse&)>;

  AntiCheatService(Run& run, StateManager& stateManager, BackendProtocol& backend)
      : run_(run), stateManager_(stateManager), backend_(backend) {}

  /// Always calls the handler once: with `internalError` if the answer cannot be used or the run
  /// has ended, with `serverError` if the backend refuses or cannot be reached.
  void receiveReceiptStatus(Receipt receipt, Handler completionHandler);

 private:
  Run& run_;
  StateManager& stateManager_;
  BackendProtocol& backend_;
};

}  // namespace pelorino
