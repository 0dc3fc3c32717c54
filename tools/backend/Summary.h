#pragma once

#include <boost/json/fwd.hpp>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace pelorino::backend {

class ExchangeStore;

/// A custom event as it arrived.
struct ReceivedEvent {
  std::int64_t time = 0;  ///< Milliseconds since 1970, by the clock of the device.
  std::string name;
  std::string parameters;  ///< JSON; empty for none.
};

/// What arrived of one user on one device. Events count where their report was answered with 200:
/// the client sends all others again.
struct UserAccount {
  std::string appId;
  std::string deviceId;
  std::string userId;  ///< Empty for the user who stands for the device.

  std::map<std::string, int> requests;  ///< By endpoint.
  std::map<std::string, int> events;    ///< By code.
  std::vector<std::int64_t> sessions;   ///< Start times in milliseconds since 1970.
  std::string deviceInfo;               ///< The last one, as JSON; empty for none.
  std::vector<ReceivedEvent> customEvents;
  std::vector<std::string> problems;  ///< Findings of the wire checks, with the exchange's id.
};

[[nodiscard]] std::vector<UserAccount> summarize(ExchangeStore& store);

/// The same as JSON.
[[nodiscard]] boost::json::value describe(const std::vector<UserAccount>& accounts);

}  // namespace pelorino::backend
