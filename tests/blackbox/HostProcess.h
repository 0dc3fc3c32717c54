#pragma once

#include <boost/json.hpp>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "DatabaseFile.h"
#include "Process.h"

namespace pelorino::blackbox {

/// pelorino-host as a child process.
class HostProcess final {
 public:
  /// Its support directory is that of the file. `description` overrides and adds fields.
  HostProcess(const DatabaseFile& file, const std::string& backendUrl,
              const boost::json::object& description = {});

  /// One command line, as it stands.
  void run(std::string line) { process_.writeLine(std::move(line)); }
  /// `configuration` overrides and adds fields.
  void initialize(const boost::json::object& configuration = {});
  void customEvent(const std::string& name);
  void sendBufferedEvents() { run(R"({"op":"sendBufferedEvents"})"); }

  /// Returns when everything handed over has run. False when the queue does not get there.
  [[nodiscard]] bool drain();

  /// Waits until so many log lines hold this text. False when they do not come.
  [[nodiscard]] bool logs(std::string_view text, std::size_t times = 1);

  /// All lines written so far that hold this text.
  [[nodiscard]] std::vector<std::string> linesWith(std::string_view text);

  /// The "result" that an operation has answered; null when it does not.
  [[nodiscard]] boost::json::value resultOf(std::string_view op);

  /// Closes the input and returns the exit code; -1 for a process that hangs.
  int end();
  /// Waits for a process that ends by itself.
  int exitCode() { return process_.waitForExit().value_or(-1); }

  void kill();

  /// Runs `work` while no thread of the process does.
  template <class Work>
  auto whileStopped(Work work) {
    return process_.whileStopped(work);
  }

  /// The most memory that it has had so far, in kilobytes.
  [[nodiscard]] long peakMemory() const;

  /// How often each of its threads has gone to sleep by itself so far, by thread id.
  [[nodiscard]] std::map<std::string, long> sleeps() const;

 private:
  Process process_;
  int drains_ = 0;
};

}  // namespace pelorino::blackbox
