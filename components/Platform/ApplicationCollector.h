#pragma once

#include <cstdint>
#include <string>

#include "Files.h"
#include "HostFacts.h"

namespace pelorino {

/// Reads what the application is from its bundle. The library's queues only.
class ApplicationCollector final {
 public:
  /// `bundle` and `files` outlive this object.
  ApplicationCollector(HostFacts& bundle, Files& files, bool isSimulator);

  // Empty when the bundle does not say.
  [[nodiscard]] std::string applicationVersion() const;
  [[nodiscard]] std::string applicationBuildVersion() const;
  [[nodiscard]] std::string applicationBundle() const;

  /// How the application was signed; see ApplicationData.
  [[nodiscard]] std::int64_t sandboxState() const;

 private:
  HostFacts& bundle_;
  Files& files_;
  bool isSimulator_;
};

}  // namespace pelorino
