#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "Clock.h"
#include "Repositories.h"
#include "Resources.h"
#include "StateManager.h"
#include "User.h"

namespace pelorino {

/// The currency that users earned and bought since the last report: one sum for each user, name,
/// source and type. Each change is stored at once.
///
/// Threads: the incomeQueue only.
class CurrencyAccrualService final {
 public:
  /// Source, then currency, then amount.
  using ResourcesBySource = std::map<std::string, Resources>;

  CurrencyAccrualService(StateManager& stateManager,
                         CurrencyAccrualResourcesRepository& currencyAccrualResourcesRepository,
                         const Clock& clock);

  /// Adds an amount to the sums of the active user. The resource's own user and time are replaced.
  /// Does nothing while tracking is off, or when the disk refuses the user's row.
  void addCurrencyAccrual(CurrencyAccrualResource resource);

  /// True if the active user has sums.
  [[nodiscard]] bool isContainsCurrencyAccrual() const;

  /// The user's sums of this type; absent when there are none.
  [[nodiscard]] std::optional<ResourcesBySource> getEarnedResources(const User& user) const;
  [[nodiscard]] std::optional<ResourcesBySource> getBoughtResources(const User& user) const;

  /// The time of the last change of the user's sums, in milliseconds since 1970; absent when there
  /// are none.
  [[nodiscard]] std::optional<std::int64_t> getLastCreatedTime(const User& user) const;

  void removeResourcesForActiveUser();
  void removeResources(const User& user);
  void removeAllResources();
  void removeInactiveUserData(std::span<const RowId> userIds);

 private:
  [[nodiscard]] std::optional<ResourcesBySource> getResources(PLRAccrualType type,
                                                              const User& user) const;

  StateManager& stateManager_;
  CurrencyAccrualResourcesRepository& currencyAccrualResourcesRepository_;
  const Clock& clock_;
};

}  // namespace pelorino
