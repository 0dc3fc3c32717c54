#pragma once

#include <boost/json/fwd.hpp>
#include <compare>
#include <cstdint>
#include <map>
#include <string>

namespace pelorino::backend {

/// What identifies an event, both in the client's log and as it arrives. Absent numbers are 0.
struct EventMark {
  std::string code;
  std::int64_t timestamp = 0;
  std::int64_t sessionId = 0;
  std::int64_t level = 0;

  friend auto operator<=>(const EventMark&, const EventMark&) = default;
};

/// How often each event is there.
using EventMarks = std::map<EventMark, int>;

[[nodiscard]] EventMark markOf(const boost::json::object& event);

/// The events that a client has stored, by the lines about them in what pelorino-host has written
/// at the log level `info`. Throws std::runtime_error for a file that cannot be read.
[[nodiscard]] EventMarks readStoredEvents(const std::string& hostOutput);

}  // namespace pelorino::backend
