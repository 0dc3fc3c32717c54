#include "CurrencyAccrualService.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "ResourceSums.h"

namespace pelorino {
namespace {

struct AccrualSums {
  static constexpr std::string_view label = "CA";
  static bool isSame(const CurrencyAccrualResource& a, const CurrencyAccrualResource& b) {
    return a.name == b.name && a.source == b.source && a.type == b.type;
  }
  static std::string text(const CurrencyAccrualResource& sum) {
    return sumText(sum.userId, description(sum.type), sum.name, sum.amount) +
           " \n\t source: " + sum.source;
  }
};

}  // namespace

CurrencyAccrualService::CurrencyAccrualService(
    StateManager& stateManager,
    CurrencyAccrualResourcesRepository& currencyAccrualResourcesRepository, const Clock& clock)
    : stateManager_(stateManager),
      currencyAccrualResourcesRepository_(currencyAccrualResourcesRepository),
      clock_(clock) {}

void CurrencyAccrualService::addCurrencyAccrual(CurrencyAccrualResource resource) {
  if (!stateManager_.getActiveProject()->trackingAvailable) return;
  if (!stateManager_.ensureActiveUserIsStored()) return;
  resource.userId = stateManager_.getActiveUser()->idKey;
  resource.timestamp = clock_.milliseconds();
  addToSums<AccrualSums>(currencyAccrualResourcesRepository_, std::move(resource));
}

bool CurrencyAccrualService::isContainsCurrencyAccrual() const {
  return currencyAccrualResourcesRepository_.countOfUser(stateManager_.getActiveUser()->idKey) > 0;
}

std::optional<CurrencyAccrualService::ResourcesBySource> CurrencyAccrualService::getEarnedResources(
    const User& user) const {
  return getResources(PLRAccrualType::earned, user);
}

std::optional<CurrencyAccrualService::ResourcesBySource> CurrencyAccrualService::getBoughtResources(
    const User& user) const {
  return getResources(PLRAccrualType::bought, user);
}

std::optional<CurrencyAccrualService::ResourcesBySource> CurrencyAccrualService::getResources(
    PLRAccrualType type, const User& user) const {
  ResourcesBySource sums;
  for (const auto& row : currencyAccrualResourcesRepository_.ofUser(user.idKey)) {
    if (row->type != type) continue;
    // There may be two rows of the same kind: one that the disk refused to delete comes back with
    // the next start.
    std::int64_t& sum = sums[row->source][row->name];
    sum = boundedSum(sum, row->amount).amount;
  }
  if (sums.empty()) return std::nullopt;
  return sums;
}

std::optional<std::int64_t> CurrencyAccrualService::getLastCreatedTime(const User& user) const {
  const auto rows = currencyAccrualResourcesRepository_.ofUser(user.idKey);
  if (rows.empty()) return std::nullopt;
  return std::ranges::max(rows, {}, &CurrencyAccrualResource::timestamp)->timestamp;
}

void CurrencyAccrualService::removeResourcesForActiveUser() {
  removeResources(*stateManager_.getActiveUser());
}

void CurrencyAccrualService::removeResources(const User& user) {
  currencyAccrualResourcesRepository_.deleteForDataForUsers(std::array{user.idKey});
}

void CurrencyAccrualService::removeAllResources() {
  currencyAccrualResourcesRepository_.clear();
}

void CurrencyAccrualService::removeInactiveUserData(std::span<const RowId> userIds) {
  currencyAccrualResourcesRepository_.deleteForDataForUsers(userIds);
}

}  // namespace pelorino
