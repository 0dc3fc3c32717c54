#pragma once

#include <boost/json.hpp>
#include <string>
#include <vector>

#include "Process.h"

namespace pelorino::blackbox {

/// An event as the backend has accepted it.
struct Arrived {
  std::string name;  ///< Empty for events that have none.
  std::string userId;
  boost::json::object event;

  /// The event but for its code, its times and its session.
  [[nodiscard]] boost::json::object content() const;
};

/// pelorino-backend as a child process.
class BackendProcess final {
 public:
  /// `options` are further arguments of the program.
  explicit BackendProcess(const std::string& dataFile,
                          const std::vector<std::string>& options = {});

  [[nodiscard]] const std::string& url() const { return url_; }
  [[nodiscard]] int port() const;

  /// From now on the endpoint answers this, whatever it is asked.
  void answer(const std::string& endpoint, const boost::json::object& body, int status = 200);

  /// What goes wrong with the next exchange of the endpoint, or with the next "times".
  void fault(const std::string& endpoint, boost::json::object order);

  /// Forgets answers, faults and everything received.
  void reset() { control("reset", {}); }

  /// Posts a body with correct headers, as a client would, and returns the status.
  int post(const std::string& endpoint, const std::string& body);

  /// The exchanges of an endpoint, or of all for the empty text.
  [[nodiscard]] boost::json::array received(const std::string& endpoint);

  /// Accepted events with this code, in their order.
  [[nodiscard]] std::vector<Arrived> events(const std::string& code);

  /// What has arrived of a user: counts of events by code, sessions, level and card.
  [[nodiscard]] boost::json::object summary(const std::string& userId);

  /// The names of the custom events.
  [[nodiscard]] std::vector<std::string> names();

  /// All that the wire checks have found, in all exchanges that were read to the end.
  [[nodiscard]] std::vector<std::string> findings();

 private:
  void control(const std::string& what, const boost::json::object& order);

  Process process_;
  std::string url_;
};

}  // namespace pelorino::blackbox
