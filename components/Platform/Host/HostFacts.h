#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "HostDescription.h"

namespace pelorino {

/// What can be known of the host and its device, every default in place. Each operation reads
/// afresh and may do I/O: the library's queues only.
class HostFacts {
 public:
  virtual ~HostFacts() = default;

  [[nodiscard]] virtual std::optional<std::string> applicationName() = 0;
  [[nodiscard]] virtual std::optional<std::string> applicationVersion() = 0;
  [[nodiscard]] virtual std::optional<std::string> applicationBuildVersion() = 0;
  [[nodiscard]] virtual std::optional<std::string> bundleIdentifier() = 0;
  [[nodiscard]] virtual std::optional<std::string> bundleFolder() = 0;

  /// Language tags such as "en-GB", best first.
  [[nodiscard]] virtual std::vector<std::string> preferredLanguages() = 0;
  [[nodiscard]] virtual std::optional<std::string> region() = 0;
  [[nodiscard]] virtual std::int64_t secondsFromGmt() = 0;

  [[nodiscard]] virtual std::string machine() = 0;
  [[nodiscard]] virtual std::string systemVersion() = 0;
  [[nodiscard]] virtual std::optional<HostScreen> screen() = 0;

  [[nodiscard]] virtual std::optional<std::string> vendorIdentifier() = 0;
  [[nodiscard]] virtual std::optional<std::string> advertisingIdentifier() = 0;

  /// True where the platform asks its user before tracking; the status then tells the answer.
  [[nodiscard]] virtual bool asksBeforeTracking() = 0;
  [[nodiscard]] virtual std::optional<int> trackingAuthorization() = 0;

  /// False on a system that is too old for its store to know introductory prices and discounts.
  [[nodiscard]] virtual bool hasStoreDiscounts() = 0;
};

}  // namespace pelorino
