#include "PeopleService.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string_view>
#include <utility>

#include "Logger.h"
#include "PeopleReservedKeys.h"

namespace pelorino {
namespace {

void put(PeopleCard& card, const std::string& key, const PeopleValueType& value) {
  card.properties.insert_or_assign(key, value);
  auto& changed = card.changedKeys;
  if (std::ranges::find(changed, key) == changed.end()) changed.push_back(key);
}

void logSet(const std::string& key, const PeopleValueType& value) {
  Logger::writeLog(PLRLogLevel::info, [&] {
    return fmt::format("[User Card] Value [{}] for the key [{}] was set successfully",
                       value.description(), key);
  });
}

void logOverflow(const std::string& key) {
  Logger::writeLog(PLRLogLevel::error, [&] {
    return fmt::format("[User Card] The incremented value [{}] caused overflow", key);
  });
}

std::int64_t sumOf(const std::string& key, std::int64_t saved, std::int64_t increment) {
  std::int64_t sum = 0;
  if (!__builtin_add_overflow(saved, increment, &sum)) return sum;
  logOverflow(key);
  using Limits = std::numeric_limits<std::int64_t>;
  return increment > 0 ? Limits::max() : Limits::min();
}

double sumOf(const std::string& key, double saved, double increment) {
  constexpr double limit = std::numeric_limits<double>::max();
  const double sum = saved + increment;
  if (sum > -limit && sum < limit) return sum;  // Not true for an infinite sum.
  logOverflow(key);
  return sum > 0 ? limit : -limit;
}

bool isNumber(const PeopleValueType& value) {
  return value.get<std::int64_t>() != nullptr || value.get<double>() != nullptr;
}

/// Absent if one of the values is not a number.
std::optional<PeopleValueType> sumOf(const std::string& key, const PeopleValueType& saved,
                                     const PeopleValueType& increment) {
  const auto* left = saved.get<std::int64_t>();
  const auto* right = increment.get<std::int64_t>();
  if (left && right) return sumOf(key, *left, *right);
  if (isNumber(saved) && isNumber(increment)) {
    return sumOf(key, saved.toDouble(), increment.toDouble());
  }
  return std::nullopt;
}

}  // namespace

PeopleService::PeopleService(StateManager& stateManager, PeopleRepository& peopleRepository)
    : stateManager_(stateManager), peopleRepository_(peopleRepository) {}

PeopleService::Card PeopleService::activeCard() {
  const auto& user = stateManager_.getActiveUser();
  if (Card stored = peopleRepository_.findOfUser(user->idKey)) return stored;
  if (userOfNewCard_ != user) {  // Another user has become active since the last refusal.
    newCard_ = std::make_shared<PeopleCard>();
    userOfNewCard_ = user;
  }
  Card card = newCard_;
  insert(card);
  return card;
}

/// If the disk refuses the card or its user, the card stays in memory. The next access tries again.
void PeopleService::insert(const Card& card) {
  if (!stateManager_.ensureActiveUserIsStored()) return;
  card->userId = userOfNewCard_->idKey;
  if (!peopleRepository_.insert(card)) return;
  newCard_.reset();
  userOfNewCard_.reset();
}

void PeopleService::store(const Card& card) {
  card == newCard_ ? insert(card) : peopleRepository_.update(*card);
}

void PeopleService::storeUpdated(const Card& card) {
  card->json = peopleJson(card->properties);
  card->updated = true;
  store(card);
}

bool PeopleService::isNeedToSend() {
  return activeCard()->updated;
}

bool PeopleService::isNeedToClear() {
  return activeCard()->cleared;
}

PeopleProperties PeopleService::getParameters(bool needFullCard) {
  const Card card = activeCard();
  PeopleProperties parameters;
  if (needFullCard) {
    parameters = card->properties;
  } else {
    for (const std::string& key : card->changedKeys) {
      const auto found = card->properties.find(key);
      if (found != card->properties.end()) parameters.insert(*found);
    }
  }
  card->changedKeys.clear();
  store(card);
  return parameters;
}

void PeopleService::removeNulls() {
  const Card card = activeCard();
  std::erase_if(card->properties, [](const auto& property) { return property.second.isNull(); });
  storeUpdated(card);
}

void PeopleService::unmarkUpdated() {
  const Card card = activeCard();
  card->updated = false;
  store(card);
}

void PeopleService::unmarkCleared() {
  const Card card = activeCard();
  card->cleared = false;
  store(card);
}

void PeopleService::setValue(const std::string& key, const PeopleValueType& value) {
  const Card card = activeCard();
  const auto saved = card->properties.find(key);
  if (saved != card->properties.end() && saved->second.isEqual(value)) return;
  put(*card, key, value);
  storeUpdated(card);
  logSet(key, value);
  const bool isCheaterMark = key == rawValue(PeopleReservedKeys::cheater);
  if (isCheaterMark && didChangeCheaterMark) didChangeCheaterMark();
}

void PeopleService::getValue(const std::string& key, const ValueHandler& handler) {
  const Card card = activeCard();
  const auto found = card->properties.find(key);
  const bool isThere = found != card->properties.end() && !found->second.isNull();
  handler(isThere ? std::optional(found->second) : std::nullopt);
}

void PeopleService::increment(const std::string& key, const PeopleValueType& value) {
  const Card card = activeCard();
  const auto saved = card->properties.find(key);
  if (saved == card->properties.end()) {
    put(*card, key, value);
    logSet(key, value);
  } else if (const auto sum = sumOf(key, saved->second, value)) {
    put(*card, key, *sum);
    Logger::writeLog(PLRLogLevel::info, [&] {
      return fmt::format("[User Card] New value [{}] for the key [{}] was successfully incremented",
                         sum->description(), key);
    });
  } else {
    Logger::writeLog(PLRLogLevel::error, [&] {
      return fmt::format(
          "[User Card] In the increment method an error has occurred: \n"
          "\tValue [{}] type does not match the increment value [{}]",
          saved->second.description(), value.description());
    });
  }
  storeUpdated(card);
}

void PeopleService::unset(const std::vector<std::string>& properties) {
  const Card card = activeCard();
  for (const std::string& key : properties) put(*card, key, PeopleValueType());
  Logger::writeLog(PLRLogLevel::info, [&] {
    return fmt::format("[User Card] Properties for key [{}] were successfully unset",
                       fmt::join(properties, ","));
  });
  storeUpdated(card);
}

void PeopleService::clearUser() {
  const Card card = activeCard();
  const std::string cheater(rawValue(PeopleReservedKeys::cheater));
  auto mark = card->properties.extract(cheater);
  card->properties.clear();
  card->cleared = true;  // The changed keys stay listed: a key without a value is not sent.
  if (mark) card->properties.insert(std::move(mark));
  storeUpdated(card);
  if (onClearedCard) onClearedCard();
  Logger::writeLog(PLRLogLevel::info, "[User Card] All user data was successfully cleared");
}

void PeopleService::removeInactiveUserData(std::span<const RowId> userIds) {
  peopleRepository_.deleteForDataForUsers(userIds);
}

}  // namespace pelorino
