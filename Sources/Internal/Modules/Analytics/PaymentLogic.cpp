#include "PaymentLogic.h"

#include <fmt/format.h>

#include <utility>

#include "Logger.h"
#include "PaymentEvents.h"

namespace pelorino {

void PaymentLogic::perform(RealCurrencyPaymentCall call) {
  if (!events_.hasSession()) return;
  if (projectService_.isCurrencyPaymentMarked(call.orderId)) {
    Logger::writeLog(PLRLogLevel::warning, [&] {
      return fmt::format("Real payment with orderId [{}]  is already used!", call.orderId);
    });
    return;
  }
  events_.add(RealCurrencyPayment{.productId = std::move(call.productId),
                                  .orderId = call.orderId,
                                  .price = call.price,
                                  .currencyCode = std::move(call.currencyCode)});
  // After the event: a crash in between repeats the payment, and loses none.
  projectService_.markCurrencyPayment(call.orderId);
  events_.sendBufferedEvents();
}

void PaymentLogic::perform(VirtualCurrencyPaymentCall call) {
  if (!events_.hasSession()) return;
  for (const auto& [name, amount] : call.resources) {
    levelResourceService_.addLevelResource(
        {.type = LevelResourceType::spent, .name = name, .amount = amount});
  }
  events_.add(VirtualCurrencyPayment{.purchaseId = std::move(call.purchaseId),
                                     .purchaseAmount = call.purchaseAmount,
                                     .purchasePrice = std::move(call.resources),
                                     .purchaseType = std::move(call.purchaseType)});
}

}  // namespace pelorino
