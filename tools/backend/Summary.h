#pragma once

#include <boost/json.hpp>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace pelorino::backend {

class ExchangeStore;

/// What arrived of one user on one device. Events count where their report was answered with 200:
/// the client sends all others again.
struct UserAccount {
  std::string appId;
  std::string deviceId;
  std::string userId;    ///< Empty for the user who stands for the device.
  std::string formerly;  ///< The identifier before, of a user who has been renamed.

  std::map<std::string, int> requests;      ///< By endpoint.
  std::vector<boost::json::object> events;  ///< In order of arrival.
  boost::json::object card;                 ///< What the user's card holds after its events.
  std::vector<std::string> problems;  ///< Findings of the wire checks, with the exchange's id.

  /// Events of one code, in order of arrival.
  [[nodiscard]] std::vector<const boost::json::object*> eventsOf(std::string_view code) const;
  /// In the event that arrived last of those that tell it; 0 when none does.
  [[nodiscard]] std::int64_t level() const;
};

/// The value of a field; 0 where there is no such integer.
[[nodiscard]] std::int64_t integerOf(const boost::json::object& event, std::string_view key);
/// The same with the empty text.
[[nodiscard]] std::string textOf(const boost::json::object& event, std::string_view key);

[[nodiscard]] std::vector<UserAccount> summarize(ExchangeStore& store);

/// The same as JSON, with the numbers of events by code.
[[nodiscard]] boost::json::value describe(const std::vector<UserAccount>& accounts);

}  // namespace pelorino::backend
