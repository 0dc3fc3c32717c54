#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pelorino {

/// A session begins. Its `timestamp` is the session's id; the other events of the session carry it
/// as `sessionId`.
struct SessionStart {
  static constexpr std::string_view code = "ss";
  std::int64_t timestamp = 0;
  std::int64_t level = 0;
  std::optional<std::vector<std::string>> inProgress;
  std::optional<std::string> inExperiments;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("timestamp", self.timestamp);
    visit("level", self.level);
    visit("inProgress", self.inProgress);
    visit("inExperiments", self.inExperiments);
  }
};

/// The application has left the foreground.
struct UserEngagement {
  static constexpr std::string_view code = "ue";
  std::int64_t timestamp = 0;
  std::int64_t level = 0;
  std::int64_t length = 0;  ///< Time in the foreground in whole seconds, rounded down.
  std::int64_t sessionId = 0;
  std::optional<std::vector<std::string>> inProgress;
  std::optional<std::string> inExperiments;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("timestamp", self.timestamp);
    visit("level", self.level);
    visit("length", self.length);
    visit("sessionId", self.sessionId);
    visit("inProgress", self.inProgress);
    visit("inExperiments", self.inExperiments);
  }
};

/// The application is still in the foreground.
struct Alive {
  static constexpr std::string_view code = "al";
  std::int64_t timestamp = 0;
  std::optional<std::string> inExperiments;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("timestamp", self.timestamp);
    visit("inExperiments", self.inExperiments);
  }
};

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

/// Tracking has been switched on or off.
struct TrackingStatus {
  static constexpr std::string_view code = "ts";
  std::int64_t timestamp = 0;
  bool trackingAllowed = false;
  std::optional<std::vector<std::string>> inProgress;
  std::optional<std::string> inExperiments;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("timestamp", self.timestamp);
    visit("trackingAllowed", self.trackingAllowed);
    visit("inProgress", self.inProgress);
    visit("inExperiments", self.inExperiments);
  }
};

}  // namespace pelorino
