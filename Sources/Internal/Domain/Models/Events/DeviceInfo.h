#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace pelorino {

/// The device and its identifiers, at the start of a session.
struct DeviceInfo {
  static constexpr std::string_view code = "di";
  std::int64_t timestamp = 0;
  std::string osVersion;
  std::string os;
  std::optional<std::int64_t> displayPpi;
  std::optional<std::string> displayResolution;
  std::optional<double> displayDiagonal;
  std::string manufacturer;
  std::string model;
  std::int64_t timeZoneOffset = 0;  ///< Seconds east of GMT.
  std::int64_t rooted = 0;          ///< 1 or 0.
  bool isLimitAdTrackingEnabled = false;
  std::optional<std::string> idfv;
  std::optional<std::string> idfa;
  std::string uuid;
  std::optional<std::int64_t> sandboxState;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("timestamp", self.timestamp);
    visit("osVersion", self.osVersion);
    visit("os", self.os);
    visit("displayPpi", self.displayPpi);
    visit("displayResolution", self.displayResolution);
    visit("displayDiagonal", self.displayDiagonal);
    visit("manufacturer", self.manufacturer);
    visit("model", self.model);
    visit("timeZoneOffset", self.timeZoneOffset);
    visit("rooted", self.rooted);
    visit("isLimitAdTrackingEnabled", self.isLimitAdTrackingEnabled);
    visit("idfv", self.idfv);
    visit("idfa", self.idfa);
    visit("uuid", self.uuid);
    visit("sandboxState", self.sandboxState);
  }
};

}  // namespace pelorino
