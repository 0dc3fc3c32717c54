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

/// The currency that users have earned and bought since it was last reported: one sum for each
/// name, source and type, stored at each change.
///
/// Threads: the incomeQueue only.
class CurrencyAccrualService final {
 public:
  /// Amounts by the name of the currency, by the name of the source.
  using ResourcesBySource = std::map<std::string, Resources>;

  CurrencyAccrualService(StateManager& stateManager,
                         CurrencyAccrualResourcesRepository& currencyAccrualResourcesRepository,
                         const Clock& clock);

  /// Adds to the sums of the active user at the present time, whatever user and time the resource
  /// names. Nothing is added while tracking is off.
  void addCurrencyAccrual(CurrencyAccrualResource resource);

  /// Whether the active user has sums.
  [[nodiscard]] bool isContainsCurrencyAccrual() const;

  /// The user's sums of this type; absent when there are none.
  [[nodiscard]] std::optional<ResourcesBySource> getEarnedResources(const User& user) const;
  [[nodiscard]] std::optional<ResourcesBySource> getBoughtResources(const User& user) const;

  /// When the user's sums last grew, in milliseconds since 1970; absent when there are none.
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
