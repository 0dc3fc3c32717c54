#pragma once

#include <vector>

#include "Config.h"
#include "PaymentCalls.h"
#include "PaymentEvents.h"
#include "ProjectService.h"
#include "ReportService.h"
#include "StateManager.h"
#include "SubscriptionService.h"
#include "UserEvents.h"

namespace pelorino {

/// Subscriptions: the store's products, the user's past purchases, and each payment.
///
/// Threads: the incomeQueue only.
class SubscriptionLogic final {
 public:
  SubscriptionLogic(StateManager& stateManager, ProjectService& projectService,
                    SubscriptionService& subscriptionService, ReportService& reportService,
                    UserEvents& events)
      : stateManager_(stateManager),
        projectService_(projectService),
        subscriptionService_(subscriptionService),
        reportService_(reportService),
        events_(events) {}

  void perform(const SubscriptionPaymentCall& call);
  void perform(EngineSubscriptionPaymentCall call);
  void perform(const SubscriptionHistoryCall& call);
  void perform(const EngineSubscriptionHistoryCall& call);
  /// Whether the host must give the history of purchases.
  [[nodiscard]] bool answer(RestoreTransactionHistoryQuery query);

  /// Whether the received configuration names another version of the subscriptions than the stored
  /// one, so that the history must be asked for again. Call it before the received one is stored.
  [[nodiscard]] bool checkIfNeedResetHistory(const Config& received) const;
  /// Asks the store for the products that the configuration names. Does nothing if it names none.
  void startSubscriptionsService();

 private:
  void receiveProducts(const std::vector<SubscriptionProduct>& products);
  void sendSubscriptionsHistoryEvent();
  template <class Transactions>
  void receiveHistory(const Transactions& transactions);
  /// Reports the payment and remembers its order.
  void addSubscriptionPayment(SubscriptionPayment payment);

  StateManager& stateManager_;
  ProjectService& projectService_;
  SubscriptionService& subscriptionService_;
  ReportService& reportService_;
  UserEvents& events_;
};

}  // namespace pelorino
