#pragma once

#include <boost/json.hpp>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "DatabaseFile.h"
#include "Process.h"

namespace pelorino::blackbox {

/// Polls until the condition holds; false when Process::deadline has passed.
[[nodiscard]] bool comesTrue(const std::function<bool()>& condition);

/// pelorino-host as a child process.
class HostProcess final {
 public:
  /// Its support directory is that of the file, which must outlive it. `description` overrides and
  /// adds fields.
  HostProcess(const DatabaseFile& file, const std::string& backendUrl,
              const boost::json::object& description = {});

  /// One command line, as it stands.
  void run(std::string line) { process_.writeLine(std::move(line)); }
  /// `configuration` overrides and adds fields.
  void initialize(const boost::json::object& configuration = {});
  void customEvent(const std::string& name);
  void sendBufferedEvents() { run(R"({"op":"sendBufferedEvents"})"); }

  /// What the database holds. The host is stopped meanwhile: a reader's lock would fail its writes.
  [[nodiscard]] std::string query(const std::string& sql);

  /// Rows of events and reports that wait for delivery.
  [[nodiscard]] std::string waiting();

  /// Asks for dispatches until nothing waits any more: after a failure nothing but the next
  /// occasion sends again. False when that does not come.
  [[nodiscard]] bool deliver();

  /// Returns when everything handed over has run. False when the queue does not get there.
  [[nodiscard]] bool drain();

  /// Waits until so many log lines hold this text. False when they do not come.
  [[nodiscard]] bool logs(std::string_view text, std::size_t times = 1);

  /// All lines written so far that hold this text.
  [[nodiscard]] std::vector<std::string> linesWith(std::string_view text);

  /// Closes the input and returns the exit code; -1 for a process that hangs.
  int end();
  /// Waits for a process that ends by itself.
  int exitCode() { return process_.waitForExit().value_or(-1); }

  void kill();

  /// How often each of its threads has gone to sleep by itself so far, by thread id.
  [[nodiscard]] std::map<std::string, long> sleeps() const;

 private:
  const DatabaseFile& file_;
  Process process_;
  int drains_ = 0;
};

}  // namespace pelorino::blackbox
