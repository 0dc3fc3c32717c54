#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "HostFacts.h"

namespace pelorino {

/// Reads device, screen, locale and clock, each value afresh. The library's queues only.
class DeviceInfoCollector final {
 public:
  /// `facts` outlives this object.
  explicit DeviceInfoCollector(HostFacts& facts) : facts_(facts) {}

  [[nodiscard]] std::string manufacturer() const;
  [[nodiscard]] std::string osName() const;
  [[nodiscard]] std::string osVersion() const;
  [[nodiscard]] std::optional<std::string> country() const;

  /// The first preferred language without what follows its first hyphen.
  [[nodiscard]] std::optional<std::string> language() const;
  [[nodiscard]] std::string model() const;
  [[nodiscard]] std::int64_t timeZoneOffset() const;

  /// Absent without a screen, or with one of no sensible size.
  [[nodiscard]] std::optional<std::string> displayResolution() const;

  /// Pixels.
  [[nodiscard]] std::optional<HostSize> nativeBounds() const;

 private:
  HostFacts& facts_;
};

}  // namespace pelorino
