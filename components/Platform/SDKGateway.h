#pragma once

#include "PlatformData.h"
#include "SdkConstraints.h"

namespace pelorino {

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
