#include "AntiCheatService.h"

#include <utility>

#include "BackendRepository.h"
#include "QueueManager.h"

namespace pelorino {

void AntiCheatService::receiveReceiptStatus(Receipt receipt, Handler completionHandler) {
  // Key and identifiers are read here: only the incomeQueue may read the project and the user.
  run_.addTold(
      QueueManager::anticheatQueue(),
      [&backend = backend_, receipt = std::move(receipt), handler = std::move(completionHandler),
       key = stateManager_.getActiveProject()->applicationKey,
       identifiers = stateManager_.getIdentifiers(*stateManager_.getActiveUser())](bool lasts) {
        callHost(handler,
                 lasts
                     ? backend.ask(BackendRepository::sendVerifyReceipt, key, identifiers, receipt)
                           .answer
                     : VerifyResponseMaker::make(PLRReceiptStatus::internalError));
      });
}

}  // namespace pelorino
