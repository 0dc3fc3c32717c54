#include <pelorino/PLRAntiCheat.h>

#include <utility>

#include "Core.h"
#include "Entry.h"
#include "HostText.h"

using namespace pelorino;

void PLRAntiCheat::verifyPayment(std::string_view receiptString,
                                 Handler completionHandler) noexcept {
  enter("VerifyPayment", [&] {
    Core::shared()->antiCheatLogic().verifyPayment(repaired(receiptString),
                                                   std::move(completionHandler));
  });
}

void PLRAntiCheat::verifyPayment(Handler completionHandler) noexcept {
  enter("VerifyPayment", [&] {
    Core::shared()->antiCheatLogic().verifyPaymentWithCompletion(std::move(completionHandler));
  });
}
