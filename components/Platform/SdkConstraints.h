#pragma once

#include <cstdint>
#include <string>

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

}  // namespace pelorino
