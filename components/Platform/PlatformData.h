#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace pelorino {

struct PlatformConstants {
  /// Sent in place of a text that the platform does not have.
  static constexpr std::string_view unknown = "";

  // Constants of the wire format, on every system.
  static constexpr std::string_view osName = "iOS";
  static constexpr std::string_view manufacturer = "Apple";
};

struct DeviceData {
  std::optional<std::string> language;  ///< First preferred language, without its region.
  std::string country;                  ///< Region code; empty when there is none.
  std::string osVersion;
  std::string osName;
  std::optional<std::int64_t> displayPpi;
  std::optional<std::string> displayResolution;  ///< Pixels, the larger side first: "2436x1125".
  std::optional<double> displayDiagonal;         ///< Inches, not rounded.
  std::string manufacturer;
  std::string model;
  std::int64_t timeZoneOffset = 0;  ///< Seconds east of GMT.
  bool isRooted = false;
};

/// Texts that the application does not have are empty.
struct ApplicationData {
  std::string applicationVersion;
  std::string applicationBuildVersion;
  std::string applicationBundle;
  /// 0 no readable provisioning profile, 1 a development build, 2 any other profile.
  std::int64_t sandboxState = 0;
};

struct SdkData {
  std::string sdkVersion;
  std::int64_t sdkCodeVersion = 0;
};

/// The device identifier in force and the one before it.
struct DeviceUIDs {
  std::string current;
  std::optional<std::string> prev;
};

struct IdentifierData {
  DeviceUIDs deviceUIDs;
  bool isLimitAdTrackingEnabled = false;
  std::optional<std::string> idfv;
  std::optional<std::string> idfa;
  std::string uuid;
};

}  // namespace pelorino
