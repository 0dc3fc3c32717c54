#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "Repositories.h"
#include "StateManager.h"
#include "User.h"

namespace pelorino {

/// The card of the active user: its values, and what of it the backend has not been told yet. Every
/// operation finds the card by the user who is active then, and makes an empty one on demand, also
/// to read. Each change is stored before the operation returns.
///
/// Threads: the incomeQueue only.
class PeopleService final {
 public:
  using ValueHandler = std::function<void(const std::optional<PeopleValueType>& value)>;

  PeopleService(StateManager& stateManager, PeopleRepository& peopleRepository);

  /// Called, within the operation, when the card has been cleared.
  std::function<void()> onClearedCard;
  /// Called, within the operation, when the user has been marked as a cheater or no cheater.
  std::function<void()> didChangeCheaterMark;

  /// Something was written since the last transmission.
  [[nodiscard]] bool isNeedToSend();
  /// The card was cleared since the last transmission.
  [[nodiscard]] bool isNeedToClear();

  /// What to transmit: the whole card, or the entries that have changed. From here on nothing
  /// counts as changed.
  [[nodiscard]] PeopleProperties getParameters(bool needFullCard);

  // What follows a transmission.
  void removeNulls();
  void unmarkUpdated();
  void unmarkCleared();

  /// A value that the key holds already changes nothing.
  void setValue(const std::string& key, const PeopleValueType& value);
  /// With nothing when the key is missing or unset.
  void getValue(const std::string& key, const ValueHandler& handler);
  /// Adds to a number; a missing key takes the increment as its value. A sum beyond what a number
  /// can hold stops at the limit. Any other saved value stays, with a line in the log.
  void increment(const std::string& key, const PeopleValueType& value);
  /// The keys stay as null markers until they have been transmitted, also those that never existed.
  void unset(const std::vector<std::string>& properties);
  /// Empties the card but for the cheater mark.
  void clearUser();

  void removeInactiveUserData(std::span<const RowId> userIds);

 private:
  using Card = std::shared_ptr<PeopleCard>;

  [[nodiscard]] Card activeCard();
  void insert(const Card& card);
  void store(const Card& card);
  /// After a change of the properties.
  void storeUpdated(const Card& card);

  StateManager& stateManager_;
  PeopleRepository& peopleRepository_;
  Card newCard_;                         ///< The active user's, while it has no row.
  std::shared_ptr<User> userOfNewCard_;  ///< Null without such a card.
};

}  // namespace pelorino
