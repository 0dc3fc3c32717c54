#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace pelorino {

/// What the operating system says of the machine, the process and its user. Every operation reads
/// afresh; any thread.
class Facts {
 public:
  virtual ~Facts() = default;

  [[nodiscard]] virtual std::optional<std::string> environment(const char* name) = 0;
  [[nodiscard]] virtual std::string homeFolder() = 0;

  /// File name of the running program.
  [[nodiscard]] virtual std::string executableName() = 0;

  /// `uname`: the machine identifier and the release of the system.
  [[nodiscard]] virtual std::string machine() = 0;
  [[nodiscard]] virtual std::string systemVersion() = 0;

  /// An identifier of this installation of the system; absent where there is none. Secret: only a
  /// hash of it may leave the process.
  [[nodiscard]] virtual std::optional<std::string> machineId() = 0;

  /// Seconds east of GMT in the local time zone at that instant, daylight saving included.
  [[nodiscard]] virtual std::int64_t secondsFromGmt(std::int64_t milliseconds) = 0;
};

}  // namespace pelorino
