// Purchases, with real money and with the application's own currencies.

#include <fmt/format.h>

#include <utility>

#include "AnalyticsLogic.h"
#include "Logger.h"
#include "RealCurrencyPayment.h"
#include "VirtualCurrencyPayment.h"

namespace pelorino {

void AnalyticsLogic::perform(RealCurrencyPaymentCall call) {
  if (!hasSession()) return;
  ProjectService& project = *services_.projectService;
  if (project.isCurrencyPaymentMarked(call.orderId)) {
    Logger::writeLog(PLRLogLevel::warning, [&] {
      return fmt::format("Real payment with orderId [{}]  is already used!", call.orderId);
    });
    return;
  }
  addEvent(RealCurrencyPayment{.productId = std::move(call.productId),
                               .orderId = call.orderId,
                               .price = call.price,
                               .currencyCode = std::move(call.currencyCode)});
  project.markCurrencyPayment(call.orderId);
  generatePeopleEvent(false);
  services_.reportService->sendBufferedEvents();
}

void AnalyticsLogic::perform(VirtualCurrencyPaymentCall call) {
  if (!hasSession()) return;
  for (const auto& [name, amount] : call.resources) {
    services_.levelResourceService->addLevelResource(
        {.type = LevelResourceType::spent, .name = name, .amount = amount});
  }
  addEvent(VirtualCurrencyPayment{.purchaseId = std::move(call.purchaseId),
                                  .purchaseAmount = call.purchaseAmount,
                                  .purchasePrice = std::move(call.resources),
                                  .purchaseType = std::move(call.purchaseType)});
}

}  // namespace pelorino
