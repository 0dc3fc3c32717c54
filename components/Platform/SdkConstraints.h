#pragma once

#include <cstdint>
#include <string>

#include "PlatformData.h"

namespace pelorino {

/// What the library calls itself, process-wide. Any thread.
class SdkConstraints final {
 public:
  SdkConstraints() = delete;

  /// "2.1.2" until an engine plug-in sets its own. A reader sees the old text or the new one.
  [[nodiscard]] static std::string sdkVersion();
  static void setSdkVersion(std::string text);

  /// The same version as the backend counts it.
  static constexpr std::int64_t sdkCodeVersion = 10;
};

/// Reads what the library calls itself.
class SDKCollector final {
 public:
  [[nodiscard]] static std::string sdkVersion() { return SdkConstraints::sdkVersion(); }
  [[nodiscard]] static std::int64_t sdkCodeVersion() { return SdkConstraints::sdkCodeVersion; }
};

/// Puts together what the collector reads.
class SDKRepository final {
 public:
  [[nodiscard]] static SdkData read() {
    return {SDKCollector::sdkVersion(), SDKCollector::sdkCodeVersion()};
  }
};

/// What the library calls itself. Nothing is kept: an engine plug-in may set another version at any
/// time, and every reader has to see it. Any thread.
class SDKGateway final {
 public:
  [[nodiscard]] static SdkData getSdkData() { return SDKRepository::read(); }
};

}  // namespace pelorino
