// Currency that comes in: far too often for an event each, so that sums of it leave from time to
// time.

#include <algorithm>
#include <utility>

#include "AnalyticsLogic.h"
#include "CurrencyAccrual.h"

namespace pelorino {
namespace {

/// Stores the user's sums as an event of the user's session, and forgets them.
void reportSums(const AnalyticsServices& services, const User& user, std::int64_t timestamp) {
  CurrencyAccrualService& sums = *services.currencyAccrualService;
  services.eventsService->addEvent(Event(CurrencyAccrual{.timestamp = timestamp,
                                                         .sessionId = user.sessionId.value_or(0),
                                                         .level = user.level,
                                                         .earned = sums.getEarnedResources(user),
                                                         .bought = sums.getBoughtResources(user)}),
                                   user);
  sums.removeResources(user);
}

}  // namespace

void AnalyticsLogic::perform(CurrencyAccrualCall call) {
  // A host may have made its value from any number.
  const auto type =
      PLRAccrualTypeFromRaw(static_cast<int>(call.accrualType)).value_or(PLRAccrualType::earned);
  services_.levelResourceService->addLevelResource({.type = type == PLRAccrualType::bought
                                                                ? LevelResourceType::bought
                                                                : LevelResourceType::earned,
                                                    .name = call.currencyName,
                                                    .amount = call.currencyAmount});
  services_.currencyAccrualService->addCurrencyAccrual({.type = type,
                                                        .name = std::move(call.currencyName),
                                                        .amount = call.currencyAmount,
                                                        .source = std::move(call.source)});
}

void AnalyticsLogic::addCurrencyAccrual() {
  if (!hasSession() || !services_.currencyAccrualService->isContainsCurrencyAccrual()) return;
  reportSums(services_, *services_.stateManager->getActiveUser(), clock_.milliseconds());
}

void AnalyticsLogic::addSavedCurrencyAccrualResources() {
  auto users = services_.stateManager->getProjectUsers();
  std::erase_if(users, [](const auto& user) { return !user->sessionId; });
  std::ranges::stable_sort(users, {}, [](const auto& user) { return *user->sessionId; });
  for (const auto& user : users) {
    // The moment of the last accrual, so that the event lies within the session that it is of.
    const auto last = services_.currencyAccrualService->getLastCreatedTime(*user);
    if (last) reportSums(services_, *user, *last);
  }
}

}  // namespace pelorino
