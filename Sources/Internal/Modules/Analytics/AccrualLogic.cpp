#include "AccrualLogic.h"

#include <algorithm>
#include <utility>

#include "ProgressEvents.h"

namespace pelorino {

void AccrualLogic::perform(CurrencyAccrualCall call) {
  // A host can cast any number to the enumeration.
  const auto type =
      PLRAccrualTypeFromRaw(static_cast<int>(call.accrualType)).value_or(PLRAccrualType::earned);
  levelResourceService_.addLevelResource({.type = type == PLRAccrualType::bought
                                                      ? LevelResourceType::bought
                                                      : LevelResourceType::earned,
                                          .name = call.currencyName,
                                          .amount = call.currencyAmount});
  currencyAccrualService_.addCurrencyAccrual({.type = type,
                                              .name = std::move(call.currencyName),
                                              .amount = call.currencyAmount,
                                              .source = std::move(call.source)});
}

void AccrualLogic::addCurrencyAccrual() {
  if (!events_.hasSession() || !currencyAccrualService_.isContainsCurrencyAccrual()) return;
  addSums(*stateManager_.getActiveUser(), events_.now());
}

void AccrualLogic::addSavedCurrencyAccrualResources() {
  auto users = stateManager_.getProjectUsers();
  std::erase_if(users, [](const auto& user) { return !user->sessionId; });
  std::ranges::stable_sort(users, {}, [](const auto& user) { return *user->sessionId; });
  for (const auto& user : users) {
    // The event belongs to the session of the last accrual, so it gets the time of that accrual.
    const auto last = currencyAccrualService_.getLastCreatedTime(*user);
    if (last) addSums(*user, *last);
  }
}

/// Stores the event before it removes the sums: a crash in between repeats amounts and loses none.
void AccrualLogic::addSums(const User& user, std::int64_t timestamp) {
  eventsService_.addEvent(
      Event(CurrencyAccrual{.timestamp = timestamp,
                            .sessionId = user.sessionId.value_or(0),
                            .level = user.level,
                            .earned = currencyAccrualService_.getEarnedResources(user),
                            .bought = currencyAccrualService_.getBoughtResources(user)}),
      user);
  currencyAccrualService_.removeResources(user);
}

}  // namespace pelorino
