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

/// The card of the active user: its values, and which of them the backend does not know yet. Each
/// operation looks up the card of the user who is active at that time. If there is none, it makes
/// an empty one, also when it only reads. Each change is stored before the operation returns.
///
/// Threads: the incomeQueue only.
class PeopleService final {
 public:
  using ValueHandler = std::function<void(const std::optional<PeopleValueType>& value)>;

  PeopleService(StateManager& stateManager, PeopleRepository& peopleRepository);

  /// Called within clearUser().
  std::function<void()> onClearedCard;
  /// Called within setValue() when the cheater mark has changed.
  std::function<void()> didChangeCheaterMark;

  /// True if the card was written since the last transmission.
  [[nodiscard]] bool isNeedToSend();
  /// True if the card was cleared since the last transmission.
  [[nodiscard]] bool isNeedToClear();

  /// Returns the whole card, or only the entries that have changed. Writes: afterwards no entry
  /// counts as changed.
  [[nodiscard]] PeopleProperties getParameters(bool needFullCard);

  // To be called after a transmission.
  void removeNulls();
  void unmarkUpdated();
  void unmarkCleared();

  /// Does nothing if the key has this value already.
  void setValue(const std::string& key, const PeopleValueType& value);
  /// Calls the handler before it returns; without a value when the key is missing or unset.
  void getValue(const std::string& key, const ValueHandler& handler);
  /// Adds to a number. A missing key gets the increment as its value. A sum beyond the limits of
  /// its type stops at the limit. A saved value that is not a number does not change, with a log
  /// line.
  void increment(const std::string& key, const PeopleValueType& value);
  /// Sets the keys to null, even those that had no value. The nulls stay until they are sent.
  void unset(const std::vector<std::string>& properties);
  /// Removes all values but the cheater mark.
  void clearUser();

  void removeInactiveUserData(std::span<const RowId> userIds);

 private:
  using Card = std::shared_ptr<PeopleCard>;

  [[nodiscard]] Card activeCard();
  void insert(const Card& card);
  void store(const Card& card);
  /// Stores the card after a change of its properties.
  void storeUpdated(const Card& card);

  StateManager& stateManager_;
  PeopleRepository& peopleRepository_;
  Card newCard_;                         ///< The active user's card while it has no row.
  std::shared_ptr<User> userOfNewCard_;  ///< Null if there is no such card.
};

}  // namespace pelorino
